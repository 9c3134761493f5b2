// Shows every hostile notice, marked off by system calls that do nothing, so that whoever traces
// this program can tell what happens in between. With --plain the notices are shown by an ordinary
// label instead: what that loads, a tracer must see.

#include "tests/support/NoticeSamples.h"
#include "ui/NoticeDialog.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QVBoxLayout>

#include <memory>

#include <unistd.h>

namespace {

std::unique_ptr<QDialog> plainDialog(const QString &text)
{
    auto dialog = std::make_unique<QDialog>();
    auto *const label = new QLabel{text};
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    (new QVBoxLayout{dialog.get()})->addWidget(label);
    return dialog;
}

void mark(const char *where, int index)
{
    const QByteArray path = QByteArray{"/marker-"} + where + '-' + QByteArray::number(index);
    // Nothing is there, and nothing follows from it.
    if (access(path.constData(), F_OK) == 0) {
        qFatal("There is such a file");
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application{argc, argv};
    const bool plain = QCoreApplication::arguments().contains(QStringLiteral("--plain"));
    const QList<support::NoticeSample> samples = support::hostileNotices();

    for (int round = 0; round < 2; ++round) {
        ui::NoticeDialog warmUp{support::warmUpNotice(), nullptr};
        support::disturb(warmUp);
    }
    for (int i = 0; i < samples.size(); ++i) {
        // The control needs one sample, and some would hang it.
        if (plain && i > 0) {
            break;
        }
        const QString &text = samples.at(i).text;
        mark("begin", i);
        {
            const std::unique_ptr<QDialog> dialog =
                plain ? plainDialog(text) : std::make_unique<ui::NoticeDialog>(text, nullptr);
            support::disturb(*dialog);
        }
        mark("end", i);
    }
    return 0;
}
