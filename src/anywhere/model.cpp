#include "anywhere/model.h"
namespace vantrel::anywhere {
const AdditiveModel<kFeatures> kFirstModel = {};
const AdditiveModel<kFinalFeatures> kFinalModel = {};
const Curve kConfidence = {};
}  // namespace vantrel::anywhere
