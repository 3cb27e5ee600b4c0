/**
 * @file batch.h
 * @brief Running a command over its inputs: read, work, write, report; several at a time.
 */
#ifndef VANTREL_CLI_BATCH_H
#define VANTREL_CLI_BATCH_H

#include <functional>
#include <string>
#include <vector>

#include "canvas.h"
#include "certainty.h"
#include "image_file.h"
#include "options.h"
#include "report.h"
#include "targets.h"

namespace tool {

/** What a command found on one scan. */
struct Finding {
  bool found = false;
  Certainty certainty = Certainty::kSure; /**< of what was found */
  double confidence = 1;                  /**< the least of what was found */
  std::string advice;                     /**< what to try where nothing was found */
  std::string message;                    /**< what was found, or why nothing was */
  std::function<Json()> details;          /**< the command's own members of the JSON, made where it is asked for */
  std::vector<Bitmap> pictures;           /**< to be written; one, or for numbered files any number */
  std::function<void(Canvas&)> draw;      /**< draws what was seen onto the overlay; may be empty */
};

/** A command's work on one scan. Called from several threads; may throw Failure or std::bad_alloc. */
using Work = std::function<Finding(Scan&)>;

/**
 * Runs the work over all inputs.
 *
 * @param also_read further files that the command reads; like the inputs they are never overwritten.
 * @return the exit status: 0 all done, 1 some input failed.
 * @throws WrongUsage
 */
int run_batch(const Options& options, Naming naming, const std::vector<std::string>& also_read, const Work& work);

}  // namespace tool

#endif
