#include "progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace kvKorvoV12_9_0_320::kvHost {

std::string ProgressText(int percent) {
    constexpr int kWidth = 40;
    const auto done = static_cast<size_t>(std::clamp(percent, 0, 100) * kWidth / 100);
    std::string number = std::to_string(std::clamp(percent, 0, 100));
    number.insert(0, 3 - number.size(), ' ');
    return "rendering [" + std::string(done, '#') + std::string(kWidth - done, '-') + "] " + number + " %";
}

KCProgressBar::KCProgressBar(int64_t total) : m_total(total), m_isOnTerminal(isatty(STDERR_FILENO) != 0) {}

KCProgressBar::~KCProgressBar() {
    if (m_isOnTerminal && m_percent >= 0)
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(ProgressText(0).size()), "");
}

void KCProgressBar::Show(int64_t done) {
    const int percent = m_total > 0 ? static_cast<int>(100 * std::clamp<int64_t>(done, 0, m_total) / m_total) : 100;
    if (!m_isOnTerminal || percent == m_percent)
        return;
    m_percent = percent;
    std::fprintf(stderr, "\r%s", ProgressText(percent).c_str());
}

} // namespace kvKorvoV12_9_0_320::kvHost
