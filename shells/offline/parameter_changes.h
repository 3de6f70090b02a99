// What an event has changed: the parameters' values before it, compared with those after it.
//
// Thread: [main], with the algorithm's lock held.
#pragma once

#include <string>
#include <vector>

#include <korvolib/alg/algorithm.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCParameterChanges {
  public:
    /// From the values as they are now, in the active setup. The algorithm outlives this.
    explicit KCParameterChanges(const cALGORITHM& algorithm);

    bool HasAny() const;
    /// "Ratio 2 → 4"; up to three parameters by their names, more by their number; "nothing changed".
    std::string ToText() const;

  private:
    const cALGORITHM& m_algorithm;
    std::vector<double> m_before;
};

} // namespace kvKorvoV12_9_0_320::kvHost
