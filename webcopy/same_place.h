// What the user is told of a template that would be copied onto itself.
#pragma once

#include <string>
#include <string_view>

std::wstring samePlaceMessage(std::wstring_view templateFolder);
