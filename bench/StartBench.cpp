#include "bench/StartMeter.h"
#include "bench/harness/Bench.h"

#include <cwchar>
#include <string>

// start_bench FOLDER BARE_APP PRODUCT: how long the product takes from the start of its process until its banner is
// written, against a bare packaged app of the same kind that writes one line. Both run under the simulator's runtime
// classes; this program is their platform.
int wmain(int argc, wchar_t** argv)
{
    if (argc != 4)
    {
        std::fprintf(stderr, "usage: start_bench FOLDER BARE_APP PRODUCT\n");
        return 2;
    }
    bench::StartMeter meter(argv[1]);
    std::wstring const bareApp = argv[2];
    std::wstring const product = argv[3];
    bench::Bench bench("start", 1);
    bench.Compare({"process start to first line written",
                   {{"bare app, one line", [&](int starts) { return meter.Measure(bareApp, starts); }},
                    {"the product, its banner", [&](int starts) { return meter.Measure(product, starts); }, 1.03}},
                   1});
    return bench.Conclude();
}
