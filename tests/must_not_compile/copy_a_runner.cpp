// Must say: deleted
// A plug-in has one runner: it is the algorithm's host callback.
#include <shells/plugin_runner.h>

void Prepare(kvKorvo::KCPluginRunner& runner) {
#ifdef MISTAKE
    kvKorvo::KCPluginRunner another = runner;
    another.Unprepare();
#endif
    runner.Unprepare();
}
