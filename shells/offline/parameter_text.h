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

/// The same with the values in setup A and B as they stand.
std::string ParameterTableWithValues(const cALGORITHM& algorithm);

} // namespace kvKorvoV12_9_0_320::kvHost
