// A progress bar on standard error, where that is a terminal; in a pipe or a file there is nothing to see.
#pragma once

#include <cstdint>
#include <string>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// "rendering [##########----------]  50 %".
std::string ProgressText(int percent);

class KCProgressBar {
  public:
    explicit KCProgressBar(int64_t total);
    /// Wipes the bar away, so that what is printed next begins on a clean line.
    ~KCProgressBar();
    KCProgressBar(const KCProgressBar&) = delete;
    KCProgressBar& operator=(const KCProgressBar&) = delete;

    /// Cheap: writes only when another percent is done.
    void Show(int64_t done);

  private:
    int64_t m_total;
    int m_percent = -1; // shown last
    bool m_isOnTerminal;
};

} // namespace kvKorvoV12_9_0_320::kvHost
