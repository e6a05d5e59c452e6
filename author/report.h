// What was found, in words and as JSON.
#pragma once

#include <string>

#include "author/Finding.h"
#include "author/Json.h"
#include "author/Package.h"
#include "author/Selection.h"
#include "author/Site.h"
#include "author/published_catalogue.h"

namespace author {

std::wstring inWords(const Selection& selection);
std::wstring inWords(const Findings& findings);
// "3 findings."
std::wstring countInWords(const Findings& findings);

void write(Json& json, const Selection& selection);
void write(Json& json, const Findings& findings);

// "7 files, 34567 bytes" and its check sum, in a line of its own.
std::wstring inWords(const Package& package);
void write(Json& json, const Package& package);  // into an open object

// A line for each archive, and the notes.
std::wstring inWords(const Site& site);
void write(Json& json, const Site& site);  // into an open object

std::wstring inWords(const PublishedReport& report);
void write(Json& json, const PublishedReport& report);  // into an open object

// The template's own options, as digits: "1111".
std::wstring flagsText(long flags);

}  // namespace author
