// CHOLMOD's supernodal LLᵀ behind the interface of the sparse engines, as a library of its own (solver/SparseEngine.cpp
// says why). Source: Y. Chen, T. A. Davis, W. W. Hager, S. Rajamanickam, ACM Trans. Math. Softw. 35 (2008) 22.
//
// The matrix comes in elimination order and is taken as it is. The symbolic analysis runs on the graph of node blocks
// and is then spread to equations: six times smaller, seven times as fast, and every supernode is a multiple of six
// columns wide.
#include "core/Parallel.h"
#include "solver/SparseEngine.h"

#include <algorithm>
#include <cassert>
#include <cholmod.h>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <thread>

extern "C" {
char* openblas_get_config();
char* openblas_get_corename();
int openblas_get_num_threads();
void openblas_set_num_threads(int threads);
void* blas_memory_alloc(int unused);
void blas_memory_free(void* buffer);
}

namespace tarnvexo {

namespace {

using Index = SuiteSparse_long;

constexpr std::size_t LargeBlock = std::size_t(4) << 20;       // bytes
constexpr std::size_t PopulatedAtOnce = std::size_t(16) << 20; // bytes

// Large blocks on large pages: the factor is then touched for the first time in a fraction of the time.
void* AllocateLarge(std::size_t bytes)
{
    void* block = std::malloc(bytes);
    if (block != nullptr && bytes >= LargeBlock) {
        platform::PreferLargePages(block, bytes);
    }
    return block;
}

void Populate(std::stop_token stop, char* array, std::size_t bytes)
{
    for (std::size_t begin = 0; begin < bytes && !stop.stop_requested(); begin += PopulatedAtOnce) {
        platform::PopulatePages(array + begin, std::min(PopulatedAtOnce, bytes - begin));
    }
}

// Every thread in a kernel of OpenBLAS takes a buffer, mostly addresses without memory behind them. Where there is no
// room for one, under "ulimit -v", OpenBLAS tries for ever: so they are made here, where a lack of room can still be
// told. They stay for the kernels to take. Errors: throws std::bad_alloc.
void MakeBlasBuffers(int threads)
{
    constexpr std::size_t bufferBytes = (std::size_t(128) << 20) + 4096;
    std::vector<void*> buffers(static_cast<std::size_t>(threads));
    for (void*& room : buffers) { room = std::malloc(bufferBytes); }
    const bool isRoomForAll = std::find(buffers.begin(), buffers.end(), nullptr) == buffers.end();
    for (void* room : buffers) { std::free(room); }
    if (!isRoomForAll) {
        throw std::bad_alloc();
    }
    for (void*& buffer : buffers) { buffer = blas_memory_alloc(0); }
    for (void* buffer : buffers) { blas_memory_free(buffer); }
}

class CholmodEngine : public SparseEngine {
public:
    explicit CholmodEngine(int threads);
    ~CholmodEngine() override;

    std::string Name() const override;
    std::string Kernels() const override;
    FactorSize Analyse(const BlockPattern& pattern) override;
    PivotReport Factorise(const BlockMatrix& matrix) override;
    void Solve(double* vectors, int count) override;

private:
    void Require(bool done) const; // throws what CHOLMOD's status says
    Index* NewIndices(std::size_t count);

    cholmod_common common = {};
    cholmod_factor* factor = nullptr;
};

CholmodEngine::CholmodEngine(int threads)
{
    SetThreadCount(threads);                                   // of this library's copy of core/Parallel
    MakeBlasBuffers(threads + openblas_get_num_threads() - 1); // its own threads, if there are any, have one each
    openblas_set_num_threads(1);
    SuiteSparse_config.malloc_func = AllocateLarge;
    cholmod_l_start(&common);
    common.print = 0;
    common.supernodal = CHOLMOD_SUPERNODAL;
    common.nmethods = 1;
    common.method[0].ordering = CHOLMOD_NATURAL;
    common.postorder = false;
    // Relaxed amalgamation, in node blocks: the library's 4, 16, 48 columns are 1, 3, 8 blocks.
    common.nrelax[0] = 1;
    common.nrelax[1] = 3;
    common.nrelax[2] = 8;
}

CholmodEngine::~CholmodEngine()
{
    cholmod_l_free_factor(&factor, &common);
    cholmod_l_finish(&common);
}

std::string CholmodEngine::Name() const
{
    int version[3];
    cholmod_version(version);
    return "CHOLMOD " + std::to_string(version[0]) + "." + std::to_string(version[1]) + "." +
           std::to_string(version[2]) + " (supernodal LLᵀ)";
}

std::string CholmodEngine::Kernels() const
{
    // "OpenBLAS 0.3.21 NO_LAPACKE DYNAMIC_ARCH ..."
    const std::string config = openblas_get_config();
    return config.substr(0, config.find(' ', config.find(' ') + 1)) + " " + openblas_get_corename();
}

void CholmodEngine::Require(bool done) const
{
    if (common.status == CHOLMOD_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    if (!done || common.status < CHOLMOD_OK) {
        throw std::runtime_error("CHOLMOD reports status " + std::to_string(common.status));
    }
}

Index* CholmodEngine::NewIndices(std::size_t count)
{
    auto* const indices = static_cast<Index*>(cholmod_l_malloc(count, sizeof(Index), &common));
    Require(indices != nullptr);
    return indices;
}

// 6·i ... 6·i + 5 for every i of a list.
void SpreadToEquations(const Index* blocks, std::size_t count, Index* equations)
{
    for (std::size_t k = 0; k < count; ++k) {
        for (int u = 0; u < DofsPerNode; ++u) { *equations++ = DofsPerNode * blocks[k] + u; }
    }
}

FactorSize CholmodEngine::Analyse(const BlockPattern& pattern)
{
    cholmod_l_free_factor(&factor, &common);
    const std::size_t columns = static_cast<std::size_t>(pattern.Size());

    // On node blocks.
    std::vector<Index> first(pattern.first.begin(), pattern.first.end());
    std::vector<Index> rows(pattern.rows.begin(), pattern.rows.end());
    cholmod_sparse graph = {};
    graph.nrow = graph.ncol = columns;
    graph.nzmax = rows.size();
    graph.p = first.data();
    graph.i = rows.data();
    graph.stype = -1;
    graph.itype = CHOLMOD_LONG;
    graph.xtype = CHOLMOD_PATTERN;
    graph.dtype = CHOLMOD_DOUBLE;
    graph.sorted = graph.packed = true;
    cholmod_factor* blockFactor = cholmod_l_analyze(&graph, &common);
    Require(blockFactor != nullptr);
    const cholmod_factor& blocks = *blockFactor;

    // On equations: every block column becomes six, every block row six.
    factor = cholmod_l_allocate_factor(DofsPerNode * columns, &common);
    Require(factor != nullptr);
    const auto* const blockColCount = static_cast<const Index*>(blocks.ColCount);
    for (std::size_t j = 0; j < DofsPerNode * columns; ++j) {
        static_cast<Index*>(factor->ColCount)[j] =
            DofsPerNode * blockColCount[j / DofsPerNode] - static_cast<Index>(j % DofsPerNode);
    }
    factor->is_ll = factor->is_super = factor->is_monotonic = true;
    factor->ordering = CHOLMOD_NATURAL;
    factor->nsuper = blocks.nsuper;
    factor->ssize = DofsPerNode * blocks.ssize;
    factor->xsize = BlockEntries * blocks.xsize;
    factor->maxcsize = BlockEntries * blocks.maxcsize;
    factor->maxesize = DofsPerNode * blocks.maxesize;
    const std::size_t starts = blocks.nsuper + 1;
    factor->super = NewIndices(starts);
    factor->pi = NewIndices(starts);
    factor->px = NewIndices(starts);
    factor->s = NewIndices(factor->ssize);
    FactorSize size;
    for (std::size_t k = 0; k < starts; ++k) {
        static_cast<Index*>(factor->super)[k] = DofsPerNode * static_cast<const Index*>(blocks.super)[k];
        static_cast<Index*>(factor->pi)[k] = DofsPerNode * static_cast<const Index*>(blocks.pi)[k];
        static_cast<Index*>(factor->px)[k] = BlockEntries * static_cast<const Index*>(blocks.px)[k];
    }
    SpreadToEquations(static_cast<const Index*>(blocks.s), blocks.ssize, static_cast<Index*>(factor->s));
    cholmod_l_free_factor(&blockFactor, &common);

    size.entries = static_cast<std::int64_t>(factor->xsize);
    const auto* const super = static_cast<const Index*>(factor->super);
    const auto* const pi = static_cast<const Index*>(factor->pi);
    for (std::size_t s = 0; s + 1 < starts; ++s) {
        for (Index k = 0; k < super[s + 1] - super[s]; ++k) {
            const double height = static_cast<double>(pi[s + 1] - pi[s] - k);
            size.operations += height * height;
        }
    }
    // Row numbers of the matrix, where its columns begin, and CHOLMOD's own: flags, heads and two maps by equation.
    const double indexCount = static_cast<double>(rows.size()) * (BlockEntries + 1) + 5.0 * DofsPerNode * columns;
    size.bytes = static_cast<double>(factor->xsize + factor->maxcsize) * sizeof(double) + indexCount * sizeof(Index);
    return size;
}

PivotReport CholmodEngine::Factorise(const BlockMatrix& matrix)
{
    // The values of the matrix are CHOLMOD's already; it only wants a row number with each. The upper triangles of the
    // diagonal blocks are passed over.
    const BlockPattern& pattern = matrix.pattern;
    const std::size_t columns = static_cast<std::size_t>(pattern.Size());
    std::vector<Index> starts(DofsPerNode * columns + 1), rows(BlockEntries * pattern.rows.size());
    std::vector<Index> blockRows(pattern.rows.begin(), pattern.rows.end());
    for (std::size_t J = 0; J < columns; ++J) {
        const std::size_t height = DofsPerNode * (pattern.first[J + 1] - pattern.first[J]);
        for (std::size_t v = 0; v < DofsPerNode; ++v) {
            const std::size_t start = BlockEntries * pattern.first[J] + height * v;
            starts[DofsPerNode * J + v] = static_cast<Index>(start);
            SpreadToEquations(&blockRows[pattern.first[J]], height / DofsPerNode, &rows[start]);
        }
    }
    starts.back() = static_cast<Index>(rows.size());

    cholmod_sparse sparse = {};
    sparse.nrow = sparse.ncol = DofsPerNode * columns;
    sparse.nzmax = rows.size();
    sparse.p = starts.data();
    sparse.i = rows.data();
    sparse.x = const_cast<double*>(matrix.values.Data()); // read only
    sparse.stype = -1;
    sparse.itype = CHOLMOD_LONG;
    sparse.xtype = CHOLMOD_REAL;
    sparse.dtype = CHOLMOD_DOUBLE;
    sparse.sorted = sparse.packed = true;

    // Memory for the factor comes page by page while the first supernodes are computed: the kernel takes longer to
    // clear it than one thread takes to fill it, and CHOLMOD is mostly one thread there.
    if (factor->xtype == CHOLMOD_PATTERN) {
        factor->x = cholmod_l_malloc(std::max<std::size_t>(factor->xsize, 1), sizeof(double), &common);
        Require(factor->x != nullptr);
        factor->xtype = CHOLMOD_REAL;
    }
    std::jthread populating;
    if (ThreadCount() > 1) {
        populating = std::jthread(Populate, static_cast<char*>(factor->x), factor->xsize * sizeof(double));
    }
    double beta[2] = {0.0, 0.0};
    cholmod_l_super_numeric(&sparse, nullptr, beta, factor, &common);
    if (common.status != CHOLMOD_NOT_POSDEF) {
        Require(factor->xtype == CHOLMOD_REAL);
    }

    PivotReport report;
    report.pivots.assign(factor->n, 0.0);
    // CHOLMOD stops at pivots that are not positive, but goes on through those that are not a number.
    std::size_t good = std::min(factor->minor, factor->n);
    const auto* const super = static_cast<const Index*>(factor->super);
    const auto* const pi = static_cast<const Index*>(factor->pi);
    const auto* const px = static_cast<const Index*>(factor->px);
    const auto* const values = static_cast<const double*>(factor->x);
    for (std::size_t s = 0; s < factor->nsuper; ++s) {
        const Index height = pi[s + 1] - pi[s];
        for (std::size_t j = static_cast<std::size_t>(super[s]); j < static_cast<std::size_t>(super[s + 1]); ++j) {
            const double diagonal = values[px[s] + (static_cast<Index>(j) - super[s]) * (height + 1)];
            if (j < good && diagonal > 0.0) {
                report.pivots[j] = diagonal * diagonal;
            } else {
                good = std::min(good, j);
            }
        }
    }
    report.failedAt = good < factor->n ? static_cast<std::int64_t>(good) : -1;
    return report;
}

void CholmodEngine::Solve(double* vectors, int count)
{
    cholmod_dense* work = cholmod_l_zeros(factor->maxesize, 1, CHOLMOD_REAL, &common);
    Require(work != nullptr);
    bool done = true;
    for (int c = 0; c < count && done; ++c) { // one by one: several at once need kernels that FixedBlas does not have
        cholmod_dense right = {};
        right.nrow = right.nzmax = right.d = factor->n;
        right.ncol = 1;
        right.x = vectors + factor->n * static_cast<std::size_t>(c);
        right.xtype = CHOLMOD_REAL;
        right.dtype = CHOLMOD_DOUBLE;
        done = cholmod_l_super_lsolve(factor, &right, work, &common) != 0 &&
               cholmod_l_super_ltsolve(factor, &right, work, &common) != 0;
    }
    cholmod_l_free_dense(&work, &common);
    Require(done);
}

} // namespace

extern "C" SparseEngine* MakeCholmodEngine(int threads)
{
    return new CholmodEngine(threads);
}

} // namespace tarnvexo
