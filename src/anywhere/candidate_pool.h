/**
 * @file candidate_pool.h
 * @brief Collects quadrilaterals, and gives back the most plausible ones that differ.
 */
#ifndef VANTREL_ANYWHERE_CANDIDATE_POOL_H
#define VANTREL_ANYWHERE_CANDIDATE_POOL_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "anywhere/quad.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** Room for a fixed number of candidates; later ones are dropped. */
class CandidatePool {
 public:
  explicit CandidatePool(std::size_t most) : candidates_(most), order_(most) {}

  bool ready() const { return candidates_.ready() && order_.ready(); }
  void add(const Quad& quad, double score) {
    if (count_ < candidates_.size()) candidates_[count_++] = {quad, score};
  }
  /** Writes the candidates with the highest scores, without those that all but equal a better one; how many there are.
   */
  std::size_t best(std::span<Quad> quads);

 private:
  struct Candidate {
    Quad quad;
    double score;
  };
  image::WorkArray<Candidate> candidates_;
  image::WorkArray<std::uint32_t> order_;
  std::size_t count_ = 0;
};

}  // namespace vantrel::anywhere

#endif
