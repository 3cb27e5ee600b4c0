/**
 * @file hevc.h
 * @brief What the data of a coded picture of a HEIC file say of it before they are decoded.
 */
#ifndef VANTREL_CLI_FORMATS_HEVC_H
#define VANTREL_CLI_FORMATS_HEVC_H

#include "metadata.h"

namespace tool {

/**
 * The pixels of the largest picture that the sets of parameters in a configuration of the decoder (ISO/IEC 14496-15,
 * 8.3.3.1) announce; 0 where there is none.
 *
 * @throws Failure it is damaged.
 */
double pixels_of_configuration(const Bytes& configuration);

/** Whether there is a set of parameters among the units of a picture's data: it would stand for what was announced. */
bool has_parameters(const Bytes& data);

}  // namespace tool

#endif
