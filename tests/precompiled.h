// Compiled once for all test programs. A test still includes what it uses.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>
