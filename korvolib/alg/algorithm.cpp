// The life of an algorithm: creation in its settled order, initialisation, whole updates.

#include <korvolib/alg/algorithm_internal.h>
#include <korvolib/alg/param_description.h>
#include <korvolib/utilities/error_codes.h>

#include <cstring>
#include <utility>

namespace kvKorvoV12_9_0_320 {

namespace {

// The result of a whole is that of its first step that failed.
void KeepFirstError(int32_t& kept, int32_t result) {
    if (kept == kErr_NoErr)
        kept = result;
}

} // namespace

cALGORITHM::cALGORITHM() : m_meters(std::make_unique<KCMeters>()), m_rest(std::make_unique<sRest>()) {
    m_mutex.init();
}

cALGORITHM::~cALGORITHM() = default;

size_t cALGORITHM::AddParam(const sCONTROL_PARAM& param) {
    if (m_rest->isPrepared)
        return kNoParam;
    try {
        m_rest->due.resize(m_params.size() + 1); // first, so that no parameter is ever without
        m_params.push_back(param);
    } catch (const std::bad_alloc&) {
        return kNoParam;
    }
    sCONTROL_PARAM& added = m_params.back();
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B}) {
        added.SetState(setup, added.GetInitialState());
        added.UpdateRealWorldFromState(setup);
    }
    return m_params.size() - 1;
}

int32_t cALGORITHM::SetDescription(const char* name, const char* xml) {
    if (name == nullptr || *name == 0)
        return kErr_NullArgument;
    try {
        if (xml == nullptr)
            m_rest->descriptions.erase(KCFixedString<63>(name));
        else
            m_rest->descriptions[KCFixedString<63>(name)] = xml;
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    return kErr_NoErr;
}

const char* cALGORITHM::GetDescription(const char* name) const {
    const auto found = m_rest->descriptions.find(KCFixedString<63>(name));
    return found == m_rest->descriptions.end() ? nullptr : found->second.c_str();
}

void cALGORITHM::SetHostCallback(KTHostCallback callback, void* refcon) {
    const KCAlgorithmLock lock(*this);
    m_hostCallback = callback;
    m_execRefcon = refcon;
}

void cALGORITHM::SetRuntimeReporter(KCRuntimeReporter* reporter) { m_rest->reporter = reporter; }

void cALGORITHM::SetSampleRate(double sampleRateHz) {
    if (std::isfinite(sampleRateHz) && sampleRateHz > 0.0)
        m_sampleRateHz = sampleRateHz;
}

int32_t cALGORITHM::FinishCreate() {
    const KCAlgorithmLock lock(*this);
    if (m_rest->isCreated)
        return m_rest->createResult;
    m_rest->isCreated = true;

    int32_t result = kErr_NoErr;
    StartRedisReporting();
    if (m_keyValues.GetBool("NeedProcessThreadSafe"))
        m_processMutex.init();
    KeepFirstError(result, PrepareParameterVec());
    KeepFirstError(result, SettleParameterVec());
    KeepFirstError(result, CreateLinkGroupsInstance());
    ScaleAllParams(-1);
    KeepFirstError(result, InitializeMeterManager());
    KeepFirstError(result, InitAutomation());
    Broadcaster()->insert(this);
    KeepFirstError(result, FinishCreateAutomation());
    const int32_t ownResult = FinishCreateSelf();
    KeepFirstError(result, CollectParamsNotSavedToUndo());
    m_rest->createResult = ownResult != kErr_NoErr ? ownResult : result;
    ReportDetail("alg state", "created");
    ReportDetail("active_setup", m_activeSetup == kPluginSetup_A ? "0" : "1");
    InitExportItemMap();
    Init_Key_Values();
    m_keyValues.SetBool("FinishCreateWasCalled", true);
    return m_rest->createResult;
}

int32_t cALGORITHM::PrepareParameterVec() {
    const char* const xml = GetDescription("ParamsXML");
    return xml != nullptr ? ReadParamsFromDescription(xml) : PrepareParameterVecSelf();
}

// Behind the parameters that were added before, if any.
int32_t cALGORITHM::ReadParamsFromDescription(const char* xml) {
    ScaleFunctionsMap userScales;
    std::vector<sCONTROL_PARAM> params;
    std::vector<sDESCRIPTION_PROBLEM> problems;
    PrepareScaleFunctionsMap(userScales);
    const int32_t result = ReadParamDescription(xml, std::strlen(xml), userScales, params, problems);
    const int32_t kept = KeepDescriptionProblems("ParamsXML", problems);
    for (const sCONTROL_PARAM& param : params)
        if (AddParam(param) == kNoParam)
            return kErr_AllocationFailed;
    return result != kErr_NoErr ? result : kept;
}

// Names lead to indexes, blocks are made, and both setups agree with their states from here on.
int32_t cALGORITHM::SettleParameterVec() {
    m_rest->isPrepared = true;
    for (sCONTROL_PARAM& param : m_params)
        for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B})
            param.UpdateRealWorldFromState(setup);
    try {
        for (size_t index = 0; index < m_params.size(); ++index)
            m_rest->indexByName.try_emplace(m_params[index].GetName().c_str(), index);
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    return m_pool.Init(GetProcessMemorySize());
}

int32_t cALGORITHM::CollectParamsNotSavedToUndo() {
    try {
        for (size_t index = 0; index < m_params.size(); ++index)
            if (!IsParamSavableToUndo(index))
                m_rest->notSavedToUndo.push_back(index);
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    return kErr_NoErr;
}

void cALGORITHM::ScaleAllParams(int32_t setup) {
    const EPluginSetup which = setup == -1 ? m_activeSetup : static_cast<EPluginSetup>(setup);
    if (which != kPluginSetup_A && which != kPluginSetup_B)
        return;
    for (sCONTROL_PARAM& param : m_params)
        param.UpdateRealWorldFromState(which);
}

int32_t cALGORITHM::InitializeMeterManager() { return m_meters->Init(GetNumMetersSelf()); }

void cALGORITHM::StartRedisReporting() {
    if (m_rest->reporter != nullptr)
        m_rest->reporter->Start();
}

void cALGORITHM::ReportDetail(const char* key, const char* value) {
    if (m_rest->reporter != nullptr && m_rest->reporter->IsActive())
        m_rest->reporter->ReportRuntimeDetail(key, value);
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::InitAlg(bool execute) {
    const KCAlgorithmLock lock(*this);
    BUFFER_HEADER* chain = InitAlgSelf();
    if (chain != nullptr && execute && m_hostCallback != nullptr)
        m_hostCallback(kHostSelector_ExecuteInit, m_execRefcon, reinterpret_cast<intptr_t>(chain), 0, 0, 0);
    DisposeBuffer(chain);
    ReportDetail("alg state", "InitAlg");
    return nullptr;
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::UpdateAlg() {
    ++m_updateAlgCount;
    const KCAlgorithmLock lock(*this);
    const uint64_t refusedBefore = m_pool.GetNumRefused();
    sChain chain(*this, ApplyAlgSelf());
    ChangeSideChainActive(m_isSideChainActive);
    if (m_linkGroups != nullptr)
        m_linkGroups->AtUpdateAlg();
    m_updateAlgRequired[0] = m_updateAlgRequired[1] = false;
    for (auto next = m_rest->parts.begin(); next != m_rest->parts.end();) {
        const KCFixedString<1023> name = next->first; // the part may leave, and take others with it
        chain.Append(next->second->UpdateAlg());
        next = m_rest->parts.upper_bound(name);
    }
    if (m_pool.GetNumRefused() != refusedBefore)
        SetUpdateAlgRequired(); // what lacked a block has not been sent
    return chain.Release();
}

void cALGORITHM::SetUpdateAlgRequired() { m_updateAlgRequired[0] = m_updateAlgRequired[1] = true; }

bool cALGORITHM::IsUpdateAlgRequired() const { return m_updateAlgRequired[0] || m_updateAlgRequired[1]; }

const std::vector<size_t>& cALGORITHM::GetParamsNotSavedToUndo() const { return m_rest->notSavedToUndo; }

void cALGORITHM::Dispose() {
    const KCAlgorithmLock lock(*this);
    if (std::exchange(m_rest->isDisposed, true))
        return;
    DisposeSelf();
    m_hostCallback = nullptr;
    m_execRefcon = nullptr;
    m_rest->reporter = nullptr;
    Broadcaster()->clear();
}

void cALGORITHM::DoIdle() {
    const KCAlgorithmLock lock(*this);
    if (!m_updateAlgRequired[0])
        return;
    BUFFER_HEADER* chain = UpdateAlg();
    ExecuteAndDisposeBuffer(chain);
}

bool cALGORITHM::TryLockAlg() const { return m_mutex.TryLock() == kvThread::KELockResult::Taken; }

cALGORITHM::BUFFER_HEADER* cALGORITHM::ChainBufs(BUFFER_HEADER* first, BUFFER_HEADER* second) {
    return KPAPI_PROCESS_MEMORY::ChainBufs(first, second);
}

void cALGORITHM::ExecuteAndDisposeBuffer(BUFFER_HEADER*& chain) {
    const KCAlgorithmLock lock(*this);
    if (chain != nullptr && m_hostCallback != nullptr)
        m_hostCallback(kHostSelector_Execute, m_execRefcon, reinterpret_cast<intptr_t>(chain), 0, 0, 0);
    DisposeBuffer(chain);
}

void cALGORITHM::DisposeBuffer(BUFFER_HEADER*& chain) {
    if (chain != nullptr && m_hostCallback != nullptr) {
        m_hostCallback(kHostSelector_Dispose, m_execRefcon, reinterpret_cast<intptr_t>(chain), 0, 0, 0);
        chain = nullptr;
        return;
    }
    KPAPI_PROCESS_MEMORY::GiveBackChain(chain);
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::TakeBuffer(uint32_t target, size_t bytes) {
    BUFFER_HEADER* const block = m_pool.Take(target, bytes);
    if (block == nullptr)
        SetUpdateAlgRequired();
    return block;
}

sPROCESS_MEMORY_SIZE cALGORITHM::GetProcessMemorySize() const {
    constexpr size_t kSpareBlocks = 16;
    sPROCESS_MEMORY_SIZE size;
    size.numBlocks = 2 * m_params.size() + kSpareBlocks;
    return size;
}

KCAlgorithmBroadcaster* cALGORITHM::Broadcaster() { return &m_broadcaster; }

void cALGORITHM::ChangeSideChainActive(bool isActive) {
    if (m_isSideChainActive == isActive)
        return;
    m_isSideChainActive = isActive;
    Broadcaster()->ActiveSideChainChanged(isActive);
}

int32_t cALGORITHM::RegisterPart(const KCFixedStringBase& name, KCAlgorithmPart* part) {
    if (part == nullptr)
        return kErr_NullArgument;
    try {
        return m_rest->parts.try_emplace(KCFixedString<1023>(name), part).second ? kErr_NoErr : kErr_Generic;
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
}

int32_t cALGORITHM::UnregisterPart(const KCFixedStringBase& name) {
    return m_rest->parts.erase(KCFixedString<1023>(name)) != 0 ? kErr_NoErr : kErr_Generic;
}

int32_t cALGORITHM::PrepareScaleFunctionsMap(ScaleFunctionsMap& map) { return PrepareScaleFunctionsMapSelf(map); }

int32_t cALGORITHM::KeepDescriptionProblems(const char* description,
                                            const std::vector<sDESCRIPTION_PROBLEM>& problems) {
    try {
        for (const sDESCRIPTION_PROBLEM& problem : problems) {
            m_rest->problems.push_back(problem);
            m_rest->problems.back().Description = description;
        }
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    return problems.empty() ? kErr_NoErr : kErr_BadDescription;
}

size_t cALGORITHM::GetNumDescriptionProblems() const { return m_rest->problems.size(); }

const sDESCRIPTION_PROBLEM* cALGORITHM::GetDescriptionProblem(size_t number) const {
    return number < m_rest->problems.size() ? &m_rest->problems[number] : nullptr;
}

// ---- Hooks that do nothing unless a plug-in says otherwise --------------------------------------------------

int32_t cALGORITHM::PrepareParameterVecSelf() { return kErr_NoErr; }
int32_t cALGORITHM::PrepareScaleFunctionsMapSelf(ScaleFunctionsMap&) { return kErr_NoErr; }
int32_t cALGORITHM::FinishCreateSelf() { return kErr_NoErr; }
int32_t cALGORITHM::InitExportItemMap() { return kErr_NoErr; }
int32_t cALGORITHM::Init_Key_Values() { return kErr_NoErr; }
void cALGORITHM::InitDataSelf() {}
void cALGORITHM::DisposeSelf() {}
size_t cALGORITHM::GetNumMetersSelf() const { return 0; }
bool cALGORITHM::IsParamSavableToUndo(size_t) const { return true; }

} // namespace kvKorvoV12_9_0_320
