// A host in C++: calls an entry and a detector that is exported under its C++ name.
#include <vantrel.h>

#include <cstdio>

int main() {
  void* nothing = nullptr;
  BITMAPPTR out{};
  const int code = AutoClipRedundantImg(&nothing, nullptr, &out, 1);
  const int between = BiCubicDir(0, 255, 255, 0);
  std::printf("%d %d %s\n", code, between, szPath);
  return code == -1 && between == 287 && (szPath[0] != '\0') == FOLDER_IS_KNOWN ? 0 : 1;
}
