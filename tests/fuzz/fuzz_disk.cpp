// Fuzzes the two files of settings with all that reads them, and the socket on which later starts
// ask for the window.
//
// An input is cut at record separators (0x1e): the client's store, the service's store, and from
// then on one datagram each.

#include "app/SingleInstance.h"
#include "app/StartupTranslator.h"
#include "tests/fuzz/Finding.h"
#include "ui/Catalogue.h"
#include "ui/ReferralCode.h"
#include "ui/ReferralDialog.h"
#include "ui/SettingsDialog.h"
#include "ui/SupportDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTranslator>

#include <algorithm>
#include <cstdint>
#include <memory>

#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using fuzz::require;
using fuzz::requireEqual;

namespace {

constexpr std::size_t longestInput = 4096;
constexpr char mark = '\x1e';
// The kernel queues no more datagrams for a reader that has not read yet.
constexpr int mostDatagrams = 8;

/// A file of settings that an input fills. QSettings reads it again only if its time or size has
/// changed.
class Store
{
public:
    explicit Store(QString path_)
        : path(std::move(path_))
    {
        QDir::root().mkpath(QFileInfo{path}.path());
    }

    void fill(const QByteArray &text)
    {
        QFile file{path};
        require(file.open(QIODevice::WriteOnly), "no store", file.errorString());
        file.write(text);
        time = time.addSecs(1);
        file.setFileTime(time, QFileDevice::FileModificationTime);
    }

private:
    QString path;
    QDateTime time = QDateTime::fromSecsSinceEpoch(1'000'000'000);
};

class DiskWorld
{
public:
    DiskWorld()
    {
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(folder(QSettings::SystemScope)));
        for (const auto scope : {QSettings::UserScope, QSettings::SystemScope}) {
            QSettings::setPath(QSettings::NativeFormat, scope, folder(scope));
        }
    }

    void fill(const QByteArray &clients, const QByteArray &services)
    {
        client.fill(clients);
        service.fill(services);
    }

private:
    QString folder(QSettings::Scope scope) const { return place.filePath(QString::number(scope)); }

    QString store(QSettings::Scope scope, const char *program) const
    {
        return QStringLiteral("%1/IXOVPN/%2.conf").arg(folder(scope), QString::fromLatin1(program));
    }

    QTemporaryDir place;
    Store client{store(QSettings::UserScope, "IxoClient")};
    Store service{store(QSettings::SystemScope, "IxoService")};
};

/// The one instance, its window, and a later start that sends any datagrams.
class Channel
{
public:
    Channel()
    {
        require(instance.claim(), "the place is taken");
        requests = std::make_unique<app::SingleInstance::ShowRequests>(instance, &window);
    }
    ~Channel() { close(sender); }
    Channel(const Channel &) = delete;
    Channel &operator=(const Channel &) = delete;

    void say(const QList<QByteArray> &datagrams)
    {
        window.hide();
        for (const QByteArray &datagram : datagrams) {
            sockaddr_un address = {};
            address.sun_family = AF_UNIX;
            const QByteArray path = "/run/user/" + QByteArray::number(geteuid()) + "/ixovpn/show";
            std::copy(path.begin(), path.end(), address.sun_path);
            require(sendto(sender, datagram.constData(), static_cast<std::size_t>(datagram.size()),
                           0, reinterpret_cast<const sockaddr *>(&address),
                           sizeof address) == datagram.size(),
                    "nobody on the channel");
        }
        while (hasUnread()) {
            QCoreApplication::processEvents();
        }
        require(window.isVisible() == !datagrams.isEmpty(), "not shown, or unasked");
    }

private:
    bool hasUnread() const
    {
        int unread = 0;
        return ioctl(sender, SIOCOUTQ, &unread) == 0 && unread > 0;
    }

    app::SingleInstance instance;
    QWidget window;
    std::unique_ptr<app::SingleInstance::ShowRequests> requests;
    int sender = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

/// True if a value may name a Qt type: some of them end the program, which is known.
bool mayNameAType(const QByteArray &store)
{
    static const QRegularExpression at{QStringLiteral(R"(@|\\x[0-9a-f]*40|\\[0-7]*100)"),
                                       QRegularExpression::CaseInsensitiveOption};
    return QString::fromLatin1(store.constData(), store.size()).contains(at);
}

bool isCode(const QString &text)
{
    return text.size() == 6 && std::all_of(text.begin(), text.end(), [](QChar c) {
               return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') ||
                      (c >= u'a' && c <= u'z');
           });
}

void tryLanguage()
{
    app::installStartupTranslator(*qApp);
    const auto translators =
        qApp->findChildren<QTranslator *>(QString{}, Qt::FindDirectChildrenOnly);
    require(translators.size() == 1, "not one translator");
    require(!translators.first()->isEmpty(), "no catalogue");
    require(translators.first()->filePath().startsWith(QStringLiteral(":/i18n/ixovpn_")),
            "a catalogue from", translators.first()->filePath());
    delete translators.first();

    require(!ui::catalogue::currentTag().isEmpty(), "no language");
    ui::SettingsDialog page{nullptr};
    page.openPage(ui::catalogue::currentTag());
    require(page.findChild<QComboBox *>()->currentIndex() >= 0, "no language selected");
}

void tryReferralCode()
{
    const QString code = storedReferralCode();
    require(isValidReferralCode(code) == isCode(code), "the rule for codes:", code);
    const ui::ReferralDialog dialog{nullptr};
    require(dialog.findChild<QLineEdit *>()->text().size() <= 12, "a long code");
}

void trySupportPage()
{
    QWidget screen;
    screen.resize(360, 560);
    ui::SupportDialog page{&screen};
    page.openPage();
    page.grab();
    for (QPushButton *const button : page.findChildren<QPushButton *>(QStringLiteral("copy"))) {
        if (!button->isHidden()) {
            button->click();
            requireEqual(QGuiApplication::clipboard()->text(),
                         button->property("copyValue").toString(), "copied");
        }
    }
    require(page.minimumSizeHint().width() <= screen.width(), "the page wants more room");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto *const world = new DiskWorld;
    static auto *const channel = new Channel;

    const QByteArray input{reinterpret_cast<const char *>(data), static_cast<int>(size)};
    QList<QByteArray> parts = input.split(mark);
    if (size > longestInput || parts.size() > mostDatagrams + 2) {
        return 0;
    }
    const QByteArray clients = parts.takeFirst();
    const QByteArray services = parts.isEmpty() ? QByteArray{} : parts.takeFirst();
    if (mayNameAType(clients) || mayNameAType(services)) {
        return 0;
    }
    world->fill(clients, services);
    tryLanguage();
    tryReferralCode();
    trySupportPage();
    channel->say(parts);
    return 0;
}
