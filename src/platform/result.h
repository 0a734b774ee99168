// How a host call fails: a small value that the caller can't drop unseen.
//
// Status is success or an Error; Result<T> is a T or an Error. Neither is thrown. Exceptions of
// libraries are caught inside platform/ and turned into these.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace velto::platform {

enum class ErrorKind {
    NotFound,       // the file, key, value or program isn't there
    AlreadyExists,  // it is there, and shouldn't be
    Denied,         // permissions or a read-only medium are in the way
    Unsuitable,     // it is there, but of the wrong kind: a folder, a pipe, no program
    Full,           // no space
    TooLarge,       // over a bound that the call names
    Malformed,      // the content or an argument isn't in the form it must have
    Other,
};

struct Error {
    ErrorKind kind = ErrorKind::Other;
    std::string subject;  // what the call was about: a path, a key, a program
    std::string text;     // the system's own words, for people
};

class [[nodiscard]] Status {
  public:
    Status() = default;  // success
    Status(Error error) : error_(std::move(error)) {}
    bool ok() const { return !error_; }
    const Error& error() const { return *error_; }  // only if not ok()

  private:
    std::optional<Error> error_;
};

template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : content_(std::in_place_index<1>, std::move(error)) {}
    bool ok() const { return content_.index() == 0; }
    const T& value() const& { return std::get<0>(content_); }  // only if ok()
    T& value() & { return std::get<0>(content_); }
    T&& value() && { return std::get<0>(std::move(content_)); }
    const Error& error() const { return std::get<1>(content_); }  // only if not ok()
    Status status() const { return ok() ? Status() : Status(error()); }

  private:
    std::variant<T, Error> content_;
};

}  // namespace velto::platform
