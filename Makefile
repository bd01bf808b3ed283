# tarnvexo: set up, build, run, test and measure, on a fresh Debian 12 machine too.
#     make build      then    build/tarnvexo in a directory that holds fem_solving.txt
# Every target first installs what is missing (apt, through sudo unless root); a second call changes nothing.

JOBS ?= 2

PACKAGES := g++ cmake ninja-build libgtest-dev libbenchmark-dev libhwy-dev libcli11-dev nlohmann-json3-dev \
    libsuitesparse-dev libmetis-dev libopenblas-pthread-dev libcpp-httplib-dev libtinygltf-dev zlib1g-dev python3
# The viewer is built by npm; one from elsewhere does not go together with Debian's.
ifeq ($(shell command -v npm),)
PACKAGES += nodejs npm
endif
# Result files are read back by VTK, the viewer is tried in a browser.
TEST_PACKAGES := python3-vtk9 chromium fonts-dejavu-core
BENCH_PACKAGES := calculix-ccx libmumps-seq-dev libmumps-dev openmpi-bin
# For Windows: the compiler, zlib, sources of the other libraries (cmake/windows), and Wine to try it.
WINDOWS_PACKAGES := gcc-mingw-w64-x86-64-posix g++-mingw-w64-x86-64-posix libz-mingw-w64-dev dpkg-dev \
    debian-archive-keyring
WINDOWS_SOURCES := metis suitesparse highway cpp-httplib
WINDOWS_TEST_PACKAGES := wine wine64 xvfb xauth xdotool
FUZZ_PACKAGES := clang-14 libclang-rt-14-dev
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)
TOOLS := $(basename $(notdir $(wildcard tools/*.cpp)))
CONFIGURE := cmake -S . -G Ninja -DPython3_EXECUTABLE=/usr/bin/python3

.PHONY: help deps build run test test-viewer windows test-windows soak bench bench-quick bench-programs
.DEFAULT_GOAL := help

help:
	@echo 'make deps    install the compiler and the libraries that are missing'
	@echo 'make build   build/tarnvexo and the tools'
	@echo 'make run     solve the example examples/midship and say how to look at it'
	@echo 'make test    all tests, optimised and under the sanitizers'
	@echo 'make test-viewer  those of the viewer alone'
	@echo 'make windows  the program for Windows: a zip file in build-windows/'
	@echo 'make test-windows  its tests under Wine'
	@echo 'make soak    the long tests, about two hours; SEEDS=500 FIRST_SEED=1000 ROUNDS=2000 FUZZ_SECONDS=1800 shorten it'
	@echo 'make bench   all benchmarks, some 90 minutes: stages, then whole runs and factorisations into bench/results/'
	@echo 'make bench-quick  whole runs up to 250,000 equations, about 5 minutes'

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
	    -DTARNVEXO_SANITIZE=address,undefined -DTARNVEXO_UNITY=ON -DTARNVEXO_BENCH=OFF -DTARNVEXO_VIEWER=OFF

build: build/build.ninja
	cmake --build build -j $(JOBS) --target tarnvexo tarnvexo_contour $(TOOLS)

run: build
	@build/tarnvexo solve examples/midship -o run/midship
	@echo
	@printf '%s\n' 'To look at it in the browser, or as a picture:' \
	    '    build/tarnvexo view run/midship --model examples/midship' \
	    '    build/tarnvexo picture run/midship --model examples/midship --out run/midship/picture.png'

test: PACKAGES += $(TEST_PACKAGES)

test: build/build.ninja build-sanitize/build.ninja test-viewer
	cmake --build build -j $(JOBS)
	ctest --test-dir build --output-on-failure -j $(JOBS)
	cmake --build build-sanitize -j $(JOBS)
	ctest --test-dir build-sanitize --output-on-failure -j $(JOBS)

test-viewer: PACKAGES += $(TEST_PACKAGES)

# The versions of the lock file; then sources alone and with pages of the program, then the built page in a browser.
test-viewer: build
	cd viewer && npm install --prefer-offline --no-audit --no-fund && npm run format:check && npx tsc --noEmit && \
	    TARNVEXO_PROGRAM=$(CURDIR)/build/tarnvexo npm test && npm run test:browser

build-windows/build.ninja: | deps
	cmake/windows/fetch-sources.sh build-windows/sources $(WINDOWS_SOURCES)
	$(CONFIGURE) -B build-windows -DCMAKE_TOOLCHAIN_FILE=cmake/windows/toolchain.cmake -DCMAKE_BUILD_TYPE=Release \
	    -DTARNVEXO_UNITY=ON -DTARNVEXO_BENCH=OFF

windows: PACKAGES += $(WINDOWS_PACKAGES)

windows: build-windows/build.ninja
	cmake --build build-windows -j $(JOBS) --target tarnvexo tarnvexo_contour
	cmake --build build-windows --target package

test-windows: PACKAGES += $(WINDOWS_TEST_PACKAGES)

test-windows: windows
	cmake --build build-windows -j $(JOBS)
	ctest --test-dir build-windows --output-on-failure -j $(JOBS)

soak: PACKAGES += $(FUZZ_PACKAGES)

soak: build
	cmake --build build -j $(JOBS) --target app_tests tarnvexo_cholmod
	@FIRST_SEED=$(FIRST_SEED) SEEDS=$(SEEDS) ROUNDS=$(ROUNDS) FUZZ_SECONDS=$(FUZZ_SECONDS) tests/soak.sh

bench bench-quick: PACKAGES += $(BENCH_PACKAGES)

# Configured anew: what was missing when the directory was made may be there now.
bench-programs: build
	$(CONFIGURE) -B build
	cmake --build build -j $(JOBS) --target bench_programs

bench: bench-programs
	build/bench/tarnvexo_bench
	/usr/bin/python3 bench/scaling.py
	/usr/bin/python3 bench/factorisation.py

bench-quick: bench-programs
	/usr/bin/python3 bench/scaling.py --quick
