/**
 * @file forms.h
 * @brief Holding every form of a kernel against its definition.
 */
#ifndef VANTREL_TESTS_SUPPORT_FORMS_H
#define VANTREL_TESTS_SUPPORT_FORMS_H

#include <gtest/gtest.h>

#include "kernels/form.h"

namespace support {

/** Calls `check(form)` for every form that runs on this processor, and says which one did not hold. */
template <class Check>
void for_each_form(Check check) {
  for (const vantrel::kernels::Form* form : vantrel::kernels::forms()) {
    SCOPED_TRACE(form->name);
    if (form->runs_here()) check(*form);
  }
}

}  // namespace support

#endif
