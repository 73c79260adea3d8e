// How the host says no: one sentence for the person, thrown where the reason is known and shown in one place.
#pragma once

#include <stdexcept>

namespace tavimo::host {

// What was asked for cannot be done with this file or folder; what() is the reason, without the file's name.
class Refusal : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The person pressed Ctrl-C and everything half-done has been taken back.
class Cancelled : public std::exception {};

}  // namespace tavimo::host
