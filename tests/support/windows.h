// Windows as a user meets them: found by what stands on them, and answered when they open.
#pragma once

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace velto::test {

// A text as it is read: without the sign of a mnemonic.
inline QString Read(QString text) {
    return text.remove('&');
}

inline QAbstractButton& Button(const QWidget& window, const QString& text) {
    for (auto* const button : window.findChildren<QAbstractButton*>()) {
        if (Read(button->text()) == text) return *button;
    }
    throw std::runtime_error("no button " + text.toStdString());
}

inline void Click(const QWidget& window, const QString& text) {
    QTest::mouseClick(&Button(window, text), Qt::LeftButton);
}

// The field behind a label.
template <class Field = QLineEdit>
Field& FieldOf(const QWidget& window, const QString& text) {
    for (const auto* const label : window.findChildren<QLabel*>()) {
        auto* const field = dynamic_cast<Field*>(label->buddy());
        if (Read(label->text()) == text && field != nullptr) return *field;
    }
    throw std::runtime_error("no field " + text.toStdString());
}

inline void Type(QLineEdit& field, const QString& text) {
    field.selectAll();
    for (const auto c : text) {
        QTest::sendKeyEvent(QTest::Click, &field, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
}

// Acts on the next dialog that opens above the present one. One that stays open behind `act` is
// closed, so that no test waits for ever.
template <class Dialog = QDialog>
void OnDialog(std::function<void(Dialog&)> act) {
    auto* const timer = new QTimer(qApp);
    auto* const below = QApplication::activeModalWidget();
    const auto rounds = std::make_shared<int>(0);
    QObject::connect(timer, &QTimer::timeout, qApp, [=] {
        constexpr int kRounds = 500;
        auto* const dialog = dynamic_cast<Dialog*>(QApplication::activeModalWidget());
        const bool open = dialog != nullptr && dialog != below && dialog->isVisible();
        if (!open && ++*rounds < kRounds) return;
        timer->deleteLater();
        timer->stop();
        EXPECT_TRUE(open) << "no dialog opened";
        if (!open) return;
        const QPointer<Dialog> watched = dialog;
        act(*dialog);
        if (watched && watched->isVisible()) watched->reject();
    });
    timer->start(10);
}

}  // namespace velto::test
