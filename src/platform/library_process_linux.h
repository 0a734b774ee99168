// One run of `velto-plugin`, the program that libraries run in, as its parent sees it.
// For the Linux form of the library service alone.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/descriptor.h"
#include "platform/library_messages_linux.h"
#include "platform/process.h"
#include "platform/result.h"

namespace velto::platform {

class LibraryProcess {
  public:
    // `answer_time` bounds every wait that isn't said to be endless.
    static Result<std::unique_ptr<LibraryProcess>> Start(ProcessService& processes,
                                                         const std::string& program,
                                                         const std::string& folder,
                                                         std::chrono::milliseconds answer_time);
    // As End.
    ~LibraryProcess();
    LibraryProcess(const LibraryProcess&) = delete;
    LibraryProcess& operator=(const LibraryProcess&) = delete;

    // False once it has ended, as far as a call has noticed.
    bool alive() const { return child_ != nullptr; }

    // The counts of the numbers and texts that the answer must have.
    struct Form {
        std::size_t numbers = 0;
        std::size_t texts = 0;
    };
    // The request's Done. A Failed is an error that the program survives. One that has died, gives
    // no answer in time or none of this form is ended.
    Result<LibraryMessage> Ask(const LibraryMessage& request, Form form, bool endless = false);

    // Lets the program end by itself, so that what libraries want to do at the end is done; kills
    // it if that takes longer than the answer time.
    void End();

  private:
    LibraryProcess(std::unique_ptr<ChildProcess> child, Descriptor channel,
                   std::chrono::milliseconds answer_time);

    // Whether something has come in time from the channel of a living program.
    bool AwaitAnswer(bool endless) const;
    void Kill();
    Error Failure(std::string text);

    std::unique_ptr<ChildProcess> child_;  // null: it has ended
    Descriptor channel_;
    Descriptor end_;  // readable when the program has ended; not valid on kernels without
    std::chrono::milliseconds answer_time_;
};

}  // namespace velto::platform
