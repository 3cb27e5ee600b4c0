#include "reference/components_list_model.h"

#include <algorithm>

#include "support/tally.h"

namespace reference::components {

namespace {

constexpr int kPool = 10000;

/** Numbers from..from + count - 1, the lowest to be handed out first. */
std::vector<int> descending(int from, int count) {
  std::vector<int> numbers;
  for (int i = count - 1; i >= 0; --i) numbers.push_back(from + i);
  return numbers;
}

void insert_behind(std::vector<int>& siblings, int previous, int node) {
  if (previous == kNobody) {
    siblings.insert(siblings.begin(), node);
  } else {
    siblings.insert(std::find(siblings.begin(), siblings.end(), previous) + 1, node);
  }
}

}  // namespace

ListModel::ListModel(int initial, int step)
    : pool_(static_cast<std::size_t>(initial)), free_(descending(0, initial)), prepared_(initial), step_(step) {}

int ListModel::request(MYRECT rect, int type) {
  if (free_.empty()) {
    if (prepared_ == kPool) {
      support::tally::count("list: exhausted");
      return kNobody;
    }
    const int count = std::min(kPool - prepared_, step_);
    free_ = descending(prepared_, count);
    prepared_ += count;
    pool_.resize(static_cast<std::size_t>(prepared_));
    support::tally::count("list: grown");
  }
  const int taken = free_.back();
  free_.pop_back();
  ++used;
  node(taken) = {rect, type, 0, kNobody, {}};
  return taken;
}

int ListModel::request_child(int parent, int previous, MYRECT rect, int type) {
  const int taken = request(rect, type);
  if (taken == kNobody) return kNobody;
  node(taken).parent = parent;
  insert_behind(node(parent).children, previous, taken);
  ++(type == BLOCK_LINE ? lines : characters);
  return taken;
}

int ListModel::request_group(int previous, MYRECT rect) {
  const int taken = request(rect, BLOCK_GROUP);
  if (taken != kNobody) insert_behind(groups_, previous, taken);
  return taken;
}

void ListModel::give_back(int number) {
  free_.push_back(number);
  --used;
}

void ListModel::unlink(int number) {
  std::vector<int>& siblings = node(number).parent == kNobody ? groups_ : node(node(number).parent).children;
  siblings.erase(std::find(siblings.begin(), siblings.end(), number));
}

void ListModel::remove_character(int number) {
  unlink(number);
  give_back(number);
  --characters;
}

void ListModel::remove_line(int number) {
  unlink(number);
  for (const int character : node(number).children) {
    give_back(character);
    --characters;
  }
  give_back(number);
  --lines;
}

void ListModel::remove_group(int number) {
  unlink(number);
  while (!node(number).children.empty()) remove_line(node(number).children.front());
  give_back(number);
}

void ListModel::widen(int parent, const MYRECT& rect) {
  MYRECT& own = node(parent).rect;
  if (rect.left != -1) own.left = std::min(own.left, rect.left);
  if (rect.bottom != -1) own.bottom = std::min(own.bottom, rect.bottom);
  own.right = std::max(own.right, rect.right);
  own.top = std::max(own.top, rect.top);
}

void ListModel::move_to_front(int from, int number, int to) {
  const bool was_empty = node(to).children.empty();
  std::vector<int>& old_siblings = node(from).children;
  old_siblings.erase(std::find(old_siblings.begin(), old_siblings.end(), number));
  node(to).children.insert(node(to).children.begin(), number);
  node(number).parent = to;
  if (node(number).type == BLOCK_NONE) {
    support::tally::count("list: moved without a type");
    return;
  }
  const MYRECT& rect = node(number).rect;
  if (!was_empty) {
    support::tally::count("list: moved into others");
    widen(to, rect);
    return;
  }
  support::tally::count("list: moved into nothing");
  MYRECT& own = node(to).rect;
  own = {rect.left, rect.top, rect.right, rect.bottom, own.reserved};
}

/** The order is a stable sort; every child is moved once within the parent, which widens it. */
void ListModel::sort_by_right(int parent, bool ascending) {
  std::vector<int>& children = node(parent).children;
  std::stable_sort(children.begin(), children.end(), [&](int p, int q) {
    return ascending ? node(p).rect.right < node(q).rect.right : node(p).rect.right > node(q).rect.right;
  });
  for (const int child : children) {
    if (node(child).type != BLOCK_NONE) widen(parent, node(child).rect);
  }
}

void ListModel::sort_by_bottom(int parent) {
  std::vector<int>& children = node(parent).children;
  std::stable_sort(children.begin(), children.end(),
                   [&](int p, int q) { return node(p).rect.bottom < node(q).rect.bottom; });
  for (const int child : children) {
    if (node(child).type != BLOCK_NONE) widen(parent, node(child).rect);
  }
}

void ListModel::adjust(int group) {
  const std::vector<int> all = node(group).children;
  for (const int line : all) {
    if (node(line).children.empty()) {
      support::tally::count("list: empty line returned");
      remove_line(line);
      continue;
    }
    MYRECT rect{9999, 0, 0, 9999, node(line).rect.reserved};
    for (const int child : node(line).children) {
      const MYRECT& part = node(child).rect;
      node(child).type = BLOCK_CHARACTER;
      rect.left = std::min(rect.left, part.left);
      rect.top = std::max(rect.top, part.top);
      rect.right = std::max(rect.right, part.right);
      rect.bottom = std::min(rect.bottom, part.bottom);
    }
    node(line).rect = rect;
    node(line).type = BLOCK_LINE;
  }
}

}  // namespace reference::components
