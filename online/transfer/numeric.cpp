#include "online/transfer/numeric.h"

#include <windows.h>

#include <oleauto.h>

#include "common/com.h"

bool isNumeric(std::wstring_view value) {
  double number = 0;
  return SUCCEEDED(VarR8FromStr(com::Bstr(value).get(), LOCALE_USER_DEFAULT, 0, &number));
}
