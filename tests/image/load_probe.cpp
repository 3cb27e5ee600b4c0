// Loads the library from the path in its first argument and prints, a line each, the folder that the library stored
// and the name that the loader has for it. Not linked with the library, so that it is loaded the first time here.
#include <dlfcn.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  void* library = dlopen(argv[1], RTLD_NOW);
  if (library == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  const auto* folder = static_cast<const char*>(dlsym(library, "szPath"));
  const auto get_name = reinterpret_cast<const char* (*)()>(dlsym(library, "_Z10GetDllPathv"));
  if (folder == nullptr || get_name == nullptr) return 1;
  const char* name = get_name();
  std::printf("%s\n%s\n", folder, name == nullptr ? "(null)" : name);
  return 0;
}
