// One run of a row against the runs of the row before.
#include <gtest/gtest.h>

#include <algorithm>

#include "components/exports.h"
#include "components/lists.h"
#include "support/block_list.h"

namespace {

using lists::Component;
using lists::component_of;

/** One row of runs over another, handled by single calls. */
class SetRunComponent : public ::testing::Test {
 protected:
  /** Handles [start, end) of the current row. */
  int run(unsigned short start, unsigned short end) {
    return ECC_SetRunComponent(start, end, row_, previous_, current_, previous_count_, previous_index_, current_count_,
                               list_, line_, last_, 100, label_);
  }
  void next_row() {
    std::copy(current_, current_ + current_count_, previous_);
    previous_count_ = current_count_;
    current_count_ = previous_index_ = 0;
    ++row_;
  }

  support::List list_;
  _BNODE* line_ = list_.line(list_.group());
  _BNODE* last_ = nullptr;
  _RUN previous_[20] = {};
  _RUN current_[20] = {};
  unsigned short previous_count_ = 0, previous_index_ = 0, current_count_ = 0, row_ = 5;
  int label_ = 1;
};

TEST_F(SetRunComponent, MakesANewCharacter) {
  label_ = 41;
  EXPECT_EQ(run(3, 7), 1);
  EXPECT_EQ(current_count_, 1);
  EXPECT_EQ(current_[0].start, 3);
  EXPECT_EQ(current_[0].end, 6);
  ASSERT_NE(current_[0].node, nullptr);
  EXPECT_EQ(component_of(*current_[0].node), (Component{3, 5, 6, 5, 4, 41}));
  EXPECT_EQ(last_, current_[0].node);
  EXPECT_EQ(label_, 42);
  EXPECT_EQ(line_->child, last_);
  EXPECT_EQ(list_.TotalCharacters(), 1u);
}

TEST_F(SetRunComponent, JoinsTheRunItTouches) {
  run(3, 7);
  _BNODE* const owner = last_;
  next_row();
  EXPECT_EQ(run(7, 9), 1);  // diagonally behind column 6
  EXPECT_EQ(current_[0].node, owner);
  EXPECT_EQ(component_of(*owner), (Component{3, 6, 8, 5, 6, 1}));
  EXPECT_EQ(label_, 2);
  EXPECT_EQ(list_.TotalCharacters(), 1u);
}

TEST_F(SetRunComponent, TouchesARunThatStartsRightBehindItsEnd) {
  run(3, 7);
  _BNODE* const owner = last_;
  next_row();
  EXPECT_EQ(run(1, 3), 1);
  EXPECT_EQ(current_[0].node, owner);
  EXPECT_EQ(previous_index_, 0);  // it reaches further right and may touch the next run
}

TEST_F(SetRunComponent, MovesThePositionPastRunsThatCannotTouchAgain) {
  run(0, 3);
  run(5, 8);
  run(10, 13);
  next_row();
  run(1, 3);  // both end in column 2
  EXPECT_EQ(previous_index_, 1);
  run(9, 10);  // behind the second run: touches it not, the third one diagonally
  EXPECT_EQ(previous_index_, 2);
  EXPECT_EQ(current_[1].node, previous_[2].node);
  run(13, 15);
  EXPECT_EQ(previous_index_, 3);
  EXPECT_EQ(current_[2].node, previous_[2].node);
}

TEST_F(SetRunComponent, StaysAtARunThatReachesFurther) {
  run(0, 10);
  next_row();
  run(0, 2);
  EXPECT_EQ(previous_index_, 0);
  run(4, 6);
  EXPECT_EQ(previous_index_, 0);
  run(8, 10);
  EXPECT_EQ(previous_index_, 1);
  EXPECT_EQ(list_.TotalCharacters(), 1u);
}

TEST_F(SetRunComponent, GivesAMergedRunToTheSurvivor) {
  row_ = 4;
  run(8, 9);
  _BNODE* const early = last_;
  next_row();
  run(0, 1);
  _BNODE* const late = last_;
  run(8, 9);
  run(20, 21);
  _BNODE* const other = last_;
  next_row();
  EXPECT_EQ(run(0, 9), 1);
  EXPECT_EQ(current_[0].node, early);
  EXPECT_EQ(component_of(*early), (Component{0, 6, 8, 4, 12, 1}));
  EXPECT_EQ(late->label, 1);  // the absorbed node keeps the survivor's label
  EXPECT_EQ(list_.free, late);
  EXPECT_EQ(previous_[0].node, early);
  EXPECT_EQ(previous_[1].node, early);
  EXPECT_EQ(previous_[2].node, other);
  EXPECT_EQ(last_, other);
  EXPECT_EQ(list_.TotalCharacters(), 2u);
}

TEST_F(SetRunComponent, RenamesRunsOfTheCurrentRowToo) {
  run(0, 3);  // becomes the later one by its bottom below
  run(6, 7);
  previous_count_ = 0;
  _BNODE* const left = current_[0].node;
  _BNODE* const right = current_[1].node;
  left->rect.bottom = 5;
  right->rect.bottom = 2;
  next_row();
  run(0, 1);  // belongs to the left one
  EXPECT_EQ(current_[0].node, left);
  run(2, 7);  // joins both: the right one started earlier and survives
  EXPECT_EQ(current_[0].node, right);
  EXPECT_EQ(current_[1].node, right);
}

TEST_F(SetRunComponent, StepsTheLastCharacterBackWhenItIsAbsorbed) {
  run(0, 1);
  _BNODE* const first = last_;
  run(4, 5);
  next_row();
  run(0, 5);
  EXPECT_EQ(last_, first);
  EXPECT_EQ(first->next, nullptr);
  EXPECT_EQ(list_.TotalCharacters(), 1u);
}

TEST_F(SetRunComponent, FailsWithoutANode) {
  while (list_.RequestNode(MYRECT{}, BLOCK_NONE, nullptr, nullptr, nullptr, nullptr) != nullptr) {
  }
  EXPECT_EQ(run(3, 7), 0);
  EXPECT_EQ(current_count_, 0);
  EXPECT_EQ(label_, 1);
  EXPECT_EQ(last_, nullptr);
}

}  // namespace
