// The native C library's letters have four bytes, those of Windows two. What the product and the
// C++ library ask of it for wide text stands here with two, and is found first.
#include <cstddef>

extern "C" {

std::size_t wcslen(const wchar_t* text) {
  std::size_t length = 0;
  while (text[length] != 0) ++length;
  return length;
}

int wmemcmp(const wchar_t* left, const wchar_t* right, std::size_t count) {
  for (; count > 0; --count, ++left, ++right)
    if (*left != *right) return *left < *right ? -1 : 1;
  return 0;
}

wchar_t* wmemchr(wchar_t* text, wchar_t letter, std::size_t count) {
  for (; count > 0; --count, ++text)
    if (*text == letter) return text;
  return nullptr;
}

wchar_t* wmemcpy(wchar_t* to, const wchar_t* from, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = from[i];
  return to;
}

wchar_t* wmemmove(wchar_t* to, const wchar_t* from, std::size_t count) {
  if (to < from) return wmemcpy(to, from, count);
  while (count-- > 0) to[count] = from[count];
  return to;
}

wchar_t* wmemset(wchar_t* to, wchar_t letter, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = letter;
  return to;
}

static int digitOf(wchar_t letter) {
  if (letter >= L'0' && letter <= L'9') return letter - L'0';
  if (letter >= L'a' && letter <= L'z') return letter - L'a' + 10;
  return letter >= L'A' && letter <= L'Z' ? letter - L'A' + 10 : 36;
}

static bool isBlank(wchar_t letter) { return letter == L' ' || (letter >= 9 && letter <= 13); }

// Too large a number becomes the largest one, as everywhere.
static unsigned long long numberAt(const wchar_t* text, unsigned long long largest, int base) {
  while (isBlank(*text)) ++text;
  const bool negative = *text == L'-';
  if (negative || *text == L'+') ++text;
  const bool isPrefixed = text[0] == L'0' && (text[1] == L'x' || text[1] == L'X');
  if (base == 16 && isPrefixed && digitOf(text[2]) < 16) text += 2;
  unsigned long long number = 0;
  bool tooLarge = false;
  for (; digitOf(*text) < base; ++text) {
    const auto digit = static_cast<unsigned>(digitOf(*text));
    if (number > (largest - digit) / static_cast<unsigned>(base)) tooLarge = true;
    number = tooLarge ? largest : number * static_cast<unsigned>(base) + digit;
  }
  return negative && !tooLarge ? (0 - number) & largest : number;
}

unsigned long wcstoul(const wchar_t* text, wchar_t**, int base) {
  return static_cast<unsigned long>(numberAt(text, ~0ul, base));
}
unsigned long long wcstoull(const wchar_t* text, wchar_t**, int base) {
  return numberAt(text, ~0ull, base);
}
// The names under which later headers ask for them.
unsigned long __isoc23_wcstoul(const wchar_t* text, wchar_t** end, int base) {
  return wcstoul(text, end, base);
}
unsigned long long __isoc23_wcstoull(const wchar_t* text, wchar_t** end, int base) {
  return wcstoull(text, end, base);
}

int _wtoi(const wchar_t* text) {
  while (isBlank(*text)) ++text;
  const bool negative = *text == L'-';
  if (negative || *text == L'+') ++text;
  long long number = 0;
  for (; *text >= L'0' && *text <= L'9'; ++text) {
    number = number * 10 + (*text - L'0');
    if (number > 0x7FFFFFFFLL + (negative ? 1 : 0)) return negative ? -0x7FFFFFFF - 1 : 0x7FFFFFFF;
  }
  return static_cast<int>(negative ? -number : number);
}

}  // extern "C"
