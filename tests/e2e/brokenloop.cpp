// Preloaded into the client, replaces QApplication::exec() by one that ends in qFatal().

#include <QApplication>

int QApplication::exec()
{
    qFatal("The event loop is broken");
}
