// Must say: abstract
// A command that an engine knows nothing of would be left out of every picture, and nobody would notice.
#include <korvolib/graphicstream/engine_base.h>

using namespace kvKorvo::kvGS;

class Engine final : public KCGraphicStreamEngineBase {
#define HANDLER(identifier, display, shortName, code, record, tail)                                                \
    int32_t Exec##identifier(KCGSRecord<record>) override { return 0; }
    KV_GS_COMMANDS(HANDLER)
#undef HANDLER
#ifndef MISTAKE
    int32_t ExecUnknown(KCGSRecord<SGSHeader>) override { return 0; }
#endif
};

void Make() { Engine engine; }
