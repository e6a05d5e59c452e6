// Small replacements for parts of the compiler's static run-time. Each of those would bring a tenth
// of this module's size into the host: formatted floating-point output, exception types with texts
// of their own, and last words on an error output that a host's module does not have. Nothing here
// changes what a program sees, but for the texts of the standard library's exceptions, which nobody
// shows.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <exception>
#include <functional>
#include <new>
#include <typeinfo>

namespace {

// In place of std::logic_error, std::runtime_error and what is derived from them.
class StandardLibraryError : public std::exception {
 public:
  const char* what() const noexcept override { return "standard library error"; }
};

}  // namespace

namespace __gnu_cxx {

void __verbose_terminate_handler() { std::abort(); }

}  // namespace __gnu_cxx

namespace std {

void __throw_bad_exception() { throw bad_exception(); }
void __throw_bad_alloc() { throw bad_alloc(); }
void __throw_bad_array_new_length() { throw bad_alloc(); }
void __throw_bad_cast() { throw StandardLibraryError(); }
void __throw_bad_typeid() { throw StandardLibraryError(); }
void __throw_logic_error(const char*) { throw StandardLibraryError(); }
void __throw_domain_error(const char*) { throw StandardLibraryError(); }
void __throw_invalid_argument(const char*) { throw StandardLibraryError(); }
void __throw_length_error(const char*) { throw StandardLibraryError(); }
void __throw_out_of_range(const char*) { throw StandardLibraryError(); }
void __throw_out_of_range_fmt(const char*, ...) { throw StandardLibraryError(); }
void __throw_runtime_error(const char*) { throw StandardLibraryError(); }
void __throw_range_error(const char*) { throw StandardLibraryError(); }
void __throw_overflow_error(const char*) { throw StandardLibraryError(); }
void __throw_underflow_error(const char*) { throw StandardLibraryError(); }
void __throw_bad_function_call() { throw StandardLibraryError(); }

}  // namespace std

// Behind std::to_wstring, which asks for whole numbers only.
extern "C" int __mingw_vsnwprintf(wchar_t* text, std::size_t size, const wchar_t* format,
                                  va_list arguments) {
  return _vsnwprintf(text, size, format, arguments);
}
