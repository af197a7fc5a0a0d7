// Comparison of two lists of names. It names the differences, because long lists are printed only in part.

#ifndef NUV_TESTS_BOUNDARY_LISTS_H
#define NUV_TESTS_BOUNDARY_LISTS_H

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>

using Names = std::multiset<std::string>;

inline void expect_same_names(const Names& present, const Names& listed) {
  Names missing;
  Names surplus;
  std::set_difference(listed.begin(), listed.end(), present.begin(), present.end(),
                      std::inserter(missing, missing.end()));
  std::set_difference(present.begin(), present.end(), listed.begin(), listed.end(),
                      std::inserter(surplus, surplus.end()));
  for (const std::string& name : missing) ADD_FAILURE() << "is listed and missing: " << name;
  for (const std::string& name : surplus) ADD_FAILURE() << "is not listed: " << name;
}

#endif
