#include "shell/app_startup_window.h"

#include <QCoreApplication>
#include <QIcon>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include "shell/paths_dialog.h"
#include "store/option_table.h"
#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {
namespace {

constexpr QSize kPicture{320, 240};
constexpr int kLogLines = 6;

// The picture's letters have its own scale, whatever the font of the windows.
void WriteInPicture(QPainter& painter, const QRect& where, int pixels, const QString& text) {
    auto font = painter.font();
    font.setPixelSize(pixels);
    painter.setFont(font);
    painter.drawText(where, Qt::AlignCenter, text);
}

QPixmap Picture(qreal ratio) {
    constexpr QRect kIcon{104, 32, 112, 112};
    constexpr QRect kName{0, 152, 320, 44};
    constexpr QRect kVersion{0, 198, 320, 20};
    constexpr int kNamePixels = 34;
    constexpr int kVersionPixels = 13;

    QPixmap picture(kPicture * ratio);
    picture.setDevicePixelRatio(ratio);
    QPainter painter(&picture);
    QLinearGradient night(0, 0, kPicture.width(), kPicture.height());
    night.setColorAt(0, QColor(0x1f, 0x2a, 0x4d));
    night.setColorAt(1, QColor(0x3d, 0x2b, 0x63));
    painter.fillRect(QRect({0, 0}, kPicture), night);
    QIcon(":/icons/velto.svg").paint(&painter, kIcon);
    painter.setPen(Qt::white);
    WriteInPicture(painter, kName, kNamePixels, "Velto");
    painter.setPen(QColor(0xc8, 0xcf, 0xe6));
    WriteInPicture(painter, kVersion, kVersionPixels, FromBytes(kFileVersion));
    return picture;
}

}  // namespace

CAppStartupWindow::CAppStartupWindow()
    : QDialog(nullptr, Qt::Dialog | Qt::FramelessWindowHint), log_(MakeOwned<QPlainTextEdit>()) {
    setWindowTitle("Velto");
    auto* const column = MakeOwned<QVBoxLayout>(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    auto* const picture = MakeOwned<QLabel>();
    picture->setPixmap(Picture(devicePixelRatioF()));
    picture->setAccessibleName("Velto");
    column->addWidget(picture, 0, Qt::AlignHCenter);
    log_->setReadOnly(true);
    log_->setFrameShape(QFrame::NoFrame);
    log_->setAccessibleName("Start-up log");
    log_->setFixedHeight(log_->fontMetrics().lineSpacing() * kLogLines);
    column->addWidget(log_);
}

void CAppStartupWindow::Run(CAppStartup& startup) {
    QTimer begin;
    begin.setSingleShot(true);
    connect(&begin, &QTimer::timeout, this, [this, &startup] {
        startup.Run();
        accept();
    });
    begin.start(0);
    exec();
}

void CAppStartupWindow::OnLogLine(const std::string& line) {
    log_->appendPlainText(FromBytes(line));
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CAppStartupWindow::RunPathsDialog() {
    CPathsDlg(this).exec();
}

}  // namespace velto
