// Reads a catalogue where it is published, as the online window and the download will.
#pragma once

#include <string>
#include <vector>

#include "author/Finding.h"
#include "author/Work.h"

namespace author {

struct PublishedReport {
  std::size_t pages = 0;
  std::size_t downloads = 0;  // different ones that pages lead to
  std::size_t archives = 0;   // that were looked into
  Findings findings;          // the "file" is a page's or archive's address
};

// Why nothing can be read at an address, as a sentence; empty when it may be tried.
std::wstring readingFault(const std::wstring& address);

// From the start page on, every page of the same server that lies in the start page's folder or
// below. Raises an Error when the start page cannot be had, 512 when `work` does not go on. What is
// downloaded on the way is gone afterwards.
PublishedReport checkPublished(const std::wstring& startPage, Work& work);

}  // namespace author
