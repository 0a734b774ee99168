// Shows how far a long piece of work is, and lets the user stop it.
//
// The work runs on the user interface thread and reports as it goes; it has ended when the event
// loop goes on. 300 ms after its first report a modal window appears; from then on each report
// handles the events that have come, none of which reaches the windows below.
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>
#include <QString>
#include <QTimer>
#include <cstddef>
#include <memory>

namespace velto {

class LongWork {
  public:
    // The window stands in front of `parent`, which must outlive this.
    explicit LongWork(QWidget& parent);

    // `done` of `total` steps. False: the user stops it.
    bool Report(const QString& what, std::size_t done, std::size_t total);

  private:
    void Show(const QString& what);
    void End();

    QWidget& parent_;
    QElapsedTimer since_;  // runs while the work does
    std::unique_ptr<QProgressDialog> window_;
    QTimer end_;
};

}  // namespace velto
