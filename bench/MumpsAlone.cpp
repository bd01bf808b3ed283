// mumps_alone MODEL THREADS [ORDERING...]              sequential library, OpenBLAS on THREADS threads
// mpirun -np N mumps_alone_mpi MODEL THREADS [ORDERING...]   N processes, each with that many threads
// The equations of a model solved by MUMPS alone, set as well as we know how; what is timed, and what is not, is as in
// cholmod_alone. Orderings are given (that of cholmod_alone, METIS or AMD on the graph of nodes) and MUMPS's own
// scotch, pord, amf, qamd; of those named, or of all, the one with fewest operations by MUMPS's analysis is used and
// timed. All but given work on blocks of six equations. LLᵀ without pivoting, no scaling, no compression, no
// refinement; large pages by the C library's allocator. The process of rank 0 holds the matrix. JSON on its standard
// output. Source: P. R. Amestoy, I. S. Duff, J.-Y. L'Excellent, J. Koster, SIAM J. Matrix Anal. Appl. 23 (2001) 15–41.
#include "BalancedModel.h"
#include "Equations.h"
#include "ReadyEnvironment.h"
#include "Stopwatch.h"

#include <cstdio>
#include <cstdlib>
#include <dmumps_c.h>
#include <mpi.h>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" {
char* openblas_get_corename();
void openblas_set_num_threads(int threads);
}

namespace {

using namespace tarnvexo;

constexpr int Given = 1; // of ICNTL(7)

struct Ordering {
    const char* name;
    int choice; // ICNTL(7)
};
constexpr Ordering Orderings[] = {{"given", Given}, {"scotch", 3}, {"pord", 4}, {"amf", 2}, {"qamd", 6}};

constexpr int WorldCommunicator = -987654; // what MUMPS takes for MPI_COMM_WORLD
enum Job { JobBegin = -1, JobEnd = -2, JobAnalyse = 1, JobFactorise = 2, JobSolve = 3 };

// Lower triangle, counted from 1 as MUMPS does.
struct Triplets {
    std::vector<int> rows, columns;
    std::vector<double> values;
};

Triplets TripletsOf(const BlockMatrix& matrix)
{
    Triplets triplets;
    const std::size_t count = LowerEntries(matrix);
    triplets.rows.reserve(count);
    triplets.columns.reserve(count);
    triplets.values.reserve(count);
    ForEachLowerEntry(matrix, [&](int row, int column, double value) {
        triplets.rows.push_back(row + 1);
        triplets.columns.push_back(column + 1);
        triplets.values.push_back(value);
    });
    return triplets;
}

// One factorisation; all processes make one and call the same procedures.
class Mumps {
public:
    explicit Mumps(const Ordering& ordering)
    {
        instance.comm_fortran = WorldCommunicator;
        instance.par = 1; // rank 0 computes too
        instance.sym = 1; // positive definite
        Do(JobBegin, "begin");
        Control(1) = Control(2) = Control(3) = -1; // no messages
        Control(6) = 0;                            // no exchange of columns
        Control(7) = ordering.choice;
        Control(8) = 0; // no scaling
        if (ordering.choice != Given) {
            Control(15) = -DofsPerNode; // equations come in blocks of this size
        }
        Control(28) = 1; // analysis in one process
    }

    Mumps(const Mumps&) = delete;
    Mumps& operator=(const Mumps&) = delete;

    ~Mumps()
    {
        instance.job = JobEnd;
        dmumps_c(&instance);
    }

    // identity [equations]: 1, 2, ...
    void SetMatrix(Triplets& triplets, std::vector<int>& identity)
    {
        instance.n = static_cast<int>(identity.size());
        instance.nnz = static_cast<std::int64_t>(triplets.values.size());
        instance.irn = triplets.rows.data();
        instance.jcn = triplets.columns.data();
        instance.a = triplets.values.data();
        instance.perm_in = identity.data();
    }

    void SetLoads(std::vector<double>& loads) { instance.rhs = loads.data(); }

    void Do(Job job, const char* step)
    {
        instance.job = job;
        dmumps_c(&instance);
        if (instance.infog[0] < 0) {
            throw std::runtime_error(std::string(step) + ": MUMPS reports " + std::to_string(instance.infog[0]) + ", " +
                                     std::to_string(instance.infog[1]));
        }
    }

    double Operations() const { return instance.rinfog[0]; } // expected, known after the analysis
    double FactorEntries() const { return instance.infog[28] >= 0 ? instance.infog[28] : -1e6 * instance.infog[28]; }

private:
    int& Control(int number) { return instance.icntl[number - 1]; }

    DMUMPS_STRUC_C instance = {};
};

std::vector<Ordering> OrderingsNamed(const std::vector<std::string>& names)
{
    std::vector<Ordering> orderings;
    for (const Ordering& ordering : Orderings) {
        bool isNamed = names.empty();
        for (const std::string& name : names) { isNamed = isNamed || name == ordering.name; }
        if (isNamed) {
            orderings.push_back(ordering);
        }
    }
    if (orderings.empty() || (!names.empty() && names.size() != orderings.size())) {
        throw std::runtime_error("orderings are given, scotch, pord, amf, qamd");
    }
    return orderings;
}

Ordering BestOrdering(const std::vector<Ordering>& orderings, Triplets& triplets, std::vector<int>& identity)
{
    if (orderings.size() == 1) {
        return orderings.front();
    }
    Ordering best = {};
    double fewest = 0.0;
    for (const Ordering& ordering : orderings) {
        Mumps mumps(ordering);
        mumps.SetMatrix(triplets, identity);
        mumps.Do(JobAnalyse, ordering.name);
        if (best.name == nullptr || mumps.Operations() < fewest) {
            best = ordering;
            fewest = mumps.Operations();
        }
    }
    return best;
}

void Run(const char* modelFile, int threads, const std::vector<Ordering>& orderings, bool isHost)
{
    openblas_set_num_threads(threads);
    Equations equations;
    Triplets triplets;
    std::vector<int> identity;
    double orderSeconds = 0.0;
    std::string givenMethod;
    if (isHost) {
        const ModelStore model = BalancedModel(modelFile);
        const NodeGraph graph = BuildNodeGraph(model);
        Stopwatch watch;
        const ChosenOrder chosen = OrderByLibraries(graph);
        orderSeconds = watch.Lap();
        givenMethod = chosen.method;
        equations = AssembleEquations(model, LowerPattern(graph, chosen.order), chosen.order);
        triplets = TripletsOf(equations.matrix);
        identity.resize(equations.loads.size());
        std::iota(identity.begin(), identity.end(), 1);
    }
    const Ordering ordering = BestOrdering(orderings, triplets, identity);
    const bool isGiven = ordering.choice == Given;

    Mumps mumps(ordering);
    mumps.SetMatrix(triplets, identity);
    std::vector<double> u = equations.loads;
    mumps.SetLoads(u);
    Stopwatch watch;
    mumps.Do(JobAnalyse, "analyse");
    const double analyseSeconds = watch.Lap();
    mumps.Do(JobFactorise, "factorise");
    const double factoriseSeconds = watch.Lap();
    mumps.Do(JobSolve, "solve");
    const double solveSeconds = watch.Lap();
    if (!isHost) {
        return;
    }
    std::printf("{\"program\": \"MUMPS %s\", \"kernels\": \"OpenBLAS %s\", \"threads\": %d, \"ordering\": \"%s\",\n"
                " \"ordering_method\": \"%s\", \"factor_entries\": %.0f, \"factor_operations\": %.6g,\n"
                " \"relative_residual\": %.3g,\n"
                " \"order\": %.6f, \"analyse\": %.6f, \"factorise\": %.6f, \"solve\": %.6f}\n",
                MUMPS_VERSION, openblas_get_corename(), threads, ordering.name,
                isGiven ? givenMethod.c_str() : ordering.name, mumps.FactorEntries(), mumps.Operations(),
                RelativeResidual(equations.matrix, u.data(), equations.loads.data()), isGiven ? orderSeconds : 0.0,
                analyseSeconds, factoriseSeconds, solveSeconds);
}

} // namespace

int main(int argc, char** argv)
{
    setenv("GLIBC_TUNABLES", "glibc.malloc.hugetlb=1", 0); // read when the process starts, which it does again here
    StartWithBlasEnvironment(argv);
    const int threads = argc > 2 ? std::atoi(argv[2]) : 0;
    if (threads < 1) {
        std::fprintf(stderr, "usage: mumps_alone MODEL THREADS [given|scotch|pord|amf|qamd...]\n");
        return 2;
    }
    try {
        const std::vector<Ordering> orderings = OrderingsNamed({argv + 3, argv + argc});
        int rank = 0;
        MPI_Init(&argc, &argv);
        MPI_Comm_rank(MPI_COMM_WORLD, &rank);
        Run(argv[1], threads, orderings, rank == 0);
        MPI_Finalize();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1; // mpirun ends the other processes
    }
}
