#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class QDialog;

namespace support {

/// A notice that tries to have something loaded, or to do other harm.
struct NoticeSample
{
    QByteArray name;
    QString text;
};

/// Where the bait lies: a picture, a style file and a pipe, with these names in this folder. The
/// picture and what the style file asks for are of a colour that no notice has by itself.
namespace bait {

constexpr char folder[] = "/tmp/bait";
constexpr unsigned colour = 0xffff00ffU;

/// Puts everything in place; the pipe, where files can be pipes, is not held up by a missing
/// writer.
void layOut();

} // namespace bait

/// Every sample names something that exists, as far as a test can see to that.
QList<NoticeSample> hostileNotices();

/// Needs every font, icon and plug-in that the samples or disturb() need, and nothing else.
QString warmUpNotice();

/// Shows the dialog, does to it what a user, the desktop and assistive technology might do, and
/// hides it.
void disturb(QDialog &dialog);

} // namespace support
