#pragma once

#include <QObject>

class QCoreApplication;

namespace app {

/// Ends the program when the desktop says that the session ends.
///
/// The toolkit asks the windows first, twice: at the question whether anything must be saved it
/// closes them, and one that only hides calls the log-out off; at the order to end it closes them
/// again, and one that is still there, be it the tray's icon, keeps the program running. Nothing
/// here waits to be saved, so neither is asked.
class SessionEnd : public QObject
{
public:
    /// For as long as this object lives. To be made before the windows are.
    explicit SessionEnd(QCoreApplication &application);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace app
