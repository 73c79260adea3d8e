// The process-wide records of text pages.
#pragma once

#include "pages/open_script.h"
#include "pages/page_layout.h"
#include "pages/page_settings.h"

namespace tavimo::pages {

struct PagesState {
  PageSettings pageSettings;
  OpenScript openScript;
  CurrentPage page;       // empty until one is read
  PageLayout pageLayout;  // of the current page; no lines until it is laid out
};

PagesState& State() noexcept;

// Back to the state at load.
void ResetState() noexcept;

}  // namespace tavimo::pages
