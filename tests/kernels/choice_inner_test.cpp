#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <span>
#include <string>

#include "kernels/form.h"

namespace {

using vantrel::kernels::choose;
using vantrel::kernels::chosen;
using vantrel::kernels::Form;
using vantrel::kernels::forms;

TEST(KernelForms, TheDefinitionsComeFirstAndRunAnywhere) {
  EXPECT_STREQ(forms().front()->name, "plain");
  EXPECT_TRUE(forms().front()->runs_here());
}

TEST(KernelForms, OneThatRunsHereIsChosenByItsName) {
  for (const Form* form : forms()) {
    const bool named = &choose(form->name) == form;
    EXPECT_EQ(named, form->runs_here()) << form->name;
  }
}

TEST(KernelForms, OneThatDoesNotRunHereIsNeverChosen) {
  for (const Form* form : forms()) EXPECT_TRUE(choose(form->name).runs_here()) << form->name;
}

TEST(KernelForms, OneForAnotherProcessorIsPassedOver) {
  Form foreign = *forms().front();
  foreign.name = "foreign";
  foreign.runs_here = [] { return false; };
  const std::array<const Form*, 3> among = {forms().front(), &foreign, forms().front()};
  EXPECT_EQ(&choose("foreign", among), forms().front());
  EXPECT_EQ(&choose(nullptr, std::span(among).first(2)), forms().front());
}

TEST(KernelForms, WithoutAKnownNameTheLastThatRunsIsChosen) {
  const Form* last = nullptr;
  for (const Form* form : forms()) {
    if (form->runs_here()) last = form;
  }
  EXPECT_EQ(&choose(nullptr), last);
  EXPECT_EQ(&choose("abacus"), last);
  EXPECT_EQ(&choose(""), last);
}

TEST(KernelForms, TheEnvironmentIsReadAtLoad) {
  EXPECT_EQ(&chosen(), &choose(std::getenv("VANTREL_KERNELS")));
  EXPECT_EQ(vantrel::image::kernels, &chosen().image);
  EXPECT_EQ(vantrel::lines::kernels, &chosen().lines);
}

TEST(KernelForms, LaterChangesOfTheEnvironmentAreNotSeen) {
  const Form* before = &chosen();
  const char* value = std::getenv("VANTREL_KERNELS");
  const std::string kept = value == nullptr ? "" : value;
  setenv("VANTREL_KERNELS", "plain", 1);
  EXPECT_EQ(&chosen(), before);
  value == nullptr ? unsetenv("VANTREL_KERNELS") : setenv("VANTREL_KERNELS", kept.c_str(), 1);
}

}  // namespace
