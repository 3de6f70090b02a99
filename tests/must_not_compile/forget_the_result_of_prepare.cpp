// Must say: (nodiscard|unused-result)
// A plug-in that could not be prepared gives silence; who ignores that finds out late.
#include <shells/plugin_runner.h>

bool Prepare(kvKorvo::KCPluginRunner& runner) {
#ifdef MISTAKE
    runner.Prepare({});
#endif
    return runner.Prepare({}) == 0;
}
