// Parameters as a person reads them: a value, a range, a table of all.
#pragma once

#include <string>

#include <korvolib/alg/algorithm.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// The value in the parameter's own words, without units.
std::string ValueText(const KCParam_Base& param, double realWorld);

/// From the value of its first state to that of its last: "-24 … 24", "Peak … RMS"; empty without a scale.
std::string RangeText(const KCParam_Base& param);

/// The highest state of a discrete parameter; 1000 for a continuous one.
double LastState(const KCParam_Base& param);

/// Index, name, scale, range, units, default and steps of every parameter.
std::string ParameterTable(const cALGORITHM& algorithm);

/// Number, law, state and members of every link group under a heading, after an empty line; empty without groups.
std::string LinkGroupTable(const cALGORITHM& algorithm);

/// "Relative, enabled: Left Trim, Right Trim"; empty for an unknown group.
std::string LinkGroupText(const cALGORITHM& algorithm, int32_t group);

/// The parameters with the values in setup A and B as they stand.
std::string ParameterTableWithValues(const cALGORITHM& algorithm);

} // namespace kvKorvoV12_9_0_320::kvHost
