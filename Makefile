# tarnvexo: set up, build, run, test and measure, on a fresh Debian 12 machine too.
#     make build      then    build/tarnvexo in a directory that holds fem_solving.txt
# Every target first installs what is missing (apt, through sudo unless root); a second call changes nothing.

JOBS ?= 2

PACKAGES := g++ cmake ninja-build libgtest-dev libbenchmark-dev libhwy-dev libcli11-dev nlohmann-json3-dev \
    libsuitesparse-dev libmetis-dev libopenblas-pthread-dev python3
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)
TOOLS := $(basename $(notdir $(wildcard tools/*.cpp)))
CONFIGURE := cmake -S . -G Ninja -DPython3_EXECUTABLE=/usr/bin/python3

.PHONY: help deps build run test bench
.DEFAULT_GOAL := help

help:
	@echo 'make deps    install the compiler and the libraries that are missing'
	@echo 'make build   build/tarnvexo and the tools'
	@echo 'make run     solve the example examples/midship and show where its results are'
	@echo 'make test    all tests, optimised and under the sanitizers'
	@echo 'make bench   all benchmarks; one: build/bench/tarnvexo_bench --benchmark_filter=NAME'

deps:
	@command -v dpkg-query >/dev/null || { \
	    echo 'make deps: error: this is not a Debian system, so nothing can be installed here'; \
	    echo '  expected: dpkg and apt'; \
	    echo '  to do:    install the equivalents of $(PACKAGES), then use cmake -S . -B build'; \
	    exit 1; }
	@missing=; \
	for package in $(PACKAGES); do \
	    status=$$(dpkg-query -W -f='$${db:Status-Status}' $$package 2>/dev/null); \
	    [ "$$status" = installed ] || missing="$$missing $$package"; \
	done; \
	if [ -n "$$missing" ]; then \
	    echo "Installing:$$missing"; \
	    $(SUDO) apt-get update && \
	    $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $$missing; \
	fi

build/build.ninja: | deps
	$(CONFIGURE) -B build -DCMAKE_BUILD_TYPE=Release

# -O1 keeps the sanitizers' run short; Debug leaves the assertions in.
build-sanitize/build.ninja: | deps
	$(CONFIGURE) -B build-sanitize -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG='-O1 -g1' \
	    -DTARNVEXO_SANITIZE=address,undefined -DTARNVEXO_BENCH=OFF

build: build/build.ninja
	cmake --build build -j $(JOBS) --target tarnvexo $(TOOLS)

run: build
	@rm -rf run/midship && mkdir -p run/midship && cp examples/midship/fem_solving.txt run/midship/
	@echo 'Solving examples/midship in run/midship ...'
	@cd run/midship && ../../build/tarnvexo </dev/null >console.txt
	@echo
	@echo 'The end of the console text (run/midship/console.txt, GBK):'
	@iconv -f GBK -t UTF-8 run/midship/console.txt | \
	    sed -E 's/[ 0-9][0-9]%Completed\.\x08{13}([ 0-9][0-9]\x08\x08)*//' | tail -n 14 | sed 's/^/    /'
	@echo
	@echo 'Results:'
	@cd run/midship && for file in *.txt *.dxf; do \
	    case "$$file" in \
	        fem_solving.txt) what='the model' ;; \
	        console.txt) what='console text: mass, loads before and after balancing, resultants' ;; \
	        Node_Dis.txt) what='displacements and rotations of every node' ;; \
	        'Shell element node stress.txt') what='stresses of every shell element at its nodes, both faces' ;; \
	        'Shell element average node stress.txt') what='the same, averaged with the neighbours' ;; \
	        Tarn+Vexo_AverageStrs.txt) what='everything for the contour viewer, beams as small shell models' ;; \
	        structure.dxf) what='line drawing of the structure, for any CAD program' ;; \
	        deformation.dxf) what='line drawing of the deformed structure' ;; \
	        *) what= ;; \
	    esac; \
	    printf '    run/midship/%-40s %8s kB  %s\n' "$$file" "$$(($$(wc -c <"$$file") / 1024))" "$$what"; \
	done
	@printf '%s\n' 'Begin with the console text and Node_Dis.txt:' \
	    "    iconv -f GBK -t UTF-8 run/midship/console.txt | tr -d '\\b' | less" \
	    'A picture, in about 20 s (needs the packages python3-numpy and python3-matplotlib):' \
	    '    /usr/bin/python3 tools/draw_results.py run/midship/Tarn+Vexo_AverageStrs.txt --unit 1e6 --label MPa \' \
	    '        --view -40,27 --limit 100 --scale 0.04 --out run/midship/picture.png'

test: build/build.ninja build-sanitize/build.ninja
	cmake --build build -j $(JOBS)
	ctest --test-dir build --output-on-failure -j $(JOBS)
	cmake --build build-sanitize -j $(JOBS)
	ctest --test-dir build-sanitize --output-on-failure -j $(JOBS)

bench: build/build.ninja
	cmake --build build -j $(JOBS) --target tarnvexo_bench
	build/bench/tarnvexo_bench
