// Every room's kernels in the form that the including file says. No guard: a file of this room includes this once.
#include "kernels/words.h"
// The rooms' kernels stand on the above.
#include "autoclip/kernels_body.h"
#include "cardcut/kernels_body.h"
#include "components/kernels_body.h"
#include "image/kernels_body.h"
#include "lines/kernels_body.h"
#include "segment/kernels_body.h"
