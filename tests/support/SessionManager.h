#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace support {

/// A session manager, which tells programs that the user logs out (X Session Management Protocol,
/// XSMP): a program may save, may ask to stay, and is then told to end. One object at a time.
class SessionManager : public QObject
{
    Q_OBJECT

public:
    SessionManager();
    ~SessionManager() override;

    /// The value of the environment variable SESSION_MANAGER.
    QString address() const;

    /// How many programs have joined, and may be told to go.
    int members() const;

    /// Begins a log-out: everybody may save, and is told to end once everybody has.
    void logOut();
    /// Whether some program asked to call the log-out off.
    bool isCancelled() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace support
