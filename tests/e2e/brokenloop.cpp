// To be loaded into the client ahead of the toolkit: what it runs then meets a fatal message.

#include <QApplication>

int QApplication::exec()
{
    qFatal("The event loop is broken");
}
