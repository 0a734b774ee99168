// One run of `velto-plugin`, the program that libraries run in, as its parent sees it.
// For the Linux form of the library service alone.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/linux/descriptor.h"
#include "platform/linux/library_messages.h"
#include "platform/process.h"
#include "platform/result.h"

namespace velto::platform {

class LibraryProcess {
  public:
    // `answer_time` bounds every wait that isn't said to be endless. SIGPIPE must be ignored.
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

    // A failure shows in the next Receive.
    void Send(const LibraryMessage& request);
    // A Done. A Failed is an error that the program survives; one that has died, gives no answer
    // in time or no proper one is ended.
    Result<LibraryMessage> Receive(bool endless = false);
    // Ends a program whose answer isn't in the form that it must have.
    Error Refuse();
    // Whether the program, now ended, has left a request that it hadn't taken.
    bool leftRequests() const { return left_requests_; }

    // Lets the program end by itself, so that what libraries want to do at the end is done; kills
    // it if that takes longer than the answer time.
    void End();

  private:
    LibraryProcess(std::unique_ptr<ChildProcess> child, Descriptor requests, Descriptor answers,
                   std::chrono::milliseconds answer_time);

    // Whether an answer has come in time from a living program.
    bool AwaitAnswer(bool endless) const;
    void Kill();
    Error Failure(std::string text);

    std::unique_ptr<ChildProcess> child_;  // null: it has ended
    Descriptor requests_;
    Descriptor answers_;
    Descriptor end_;  // readable when the program has ended
    std::chrono::milliseconds answer_time_;
    bool left_requests_ = false;
};

}  // namespace velto::platform
