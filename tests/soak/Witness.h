#pragma once

#include <QGenericPlugin>
#include <QObject>

class QJsonObject;

namespace soak {

/// Tells from inside a program what it shows and what it holds: answers each line on a local
/// socket, whose path is the plugin's parameter, with one line of JSON. For the line "trim" it
/// first gives free memory back to the system. Between two lines it does nothing.
class Witness : public QObject
{
    Q_OBJECT

public:
    explicit Witness(const QString &path);

private:
    static QJsonObject testimony();
};

class WitnessPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "witness.json")

public:
    QObject *create(const QString &name, const QString &path) override;
};

} // namespace soak
