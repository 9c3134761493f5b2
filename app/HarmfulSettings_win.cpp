#include "app/HarmfulSettings.h"

#include <QCoreApplication>
#include <QString>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <windows.h>

namespace app {

namespace {

class Key
{
public:
    explicit Key(HKEY key_)
        : key(key_)
    {}
    ~Key()
    {
        if (key != nullptr) {
            RegCloseKey(key);
        }
    }
    Key(const Key &) = delete;
    Key &operator=(const Key &) = delete;

    HKEY get() const { return key; }

private:
    HKEY key;
};

struct Value
{
    std::wstring name;
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

HKEY openKey(const std::wstring &path)
{
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE | KEY_SET_VALUE, &key);
    return key;
}

// Text that holds a zero is stored as bytes.
bool isHarmful(const Value &value)
{
    const std::wstring_view text{reinterpret_cast<const wchar_t *>(value.data.data()),
                                 value.data.size() / sizeof(wchar_t)};
    return text.find(L"@Variant(") != std::wstring_view::npos ||
           text.find(L"@DateTime(") != std::wstring_view::npos;
}

std::vector<Value> harmfulValues(HKEY key)
{
    DWORD count = 0;
    DWORD longestName = 0;
    DWORD mostData = 0;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count,
                     &longestName, &mostData, nullptr, nullptr);
    std::vector<Value> values;
    for (DWORD i = 0; i < count; ++i) {
        Value value{std::wstring(longestName + 1, L'\0'), REG_NONE, std::vector<BYTE>(mostData)};
        DWORD nameLength = longestName + 1;
        DWORD dataLength = mostData;
        if (RegEnumValueW(key, i, value.name.data(), &nameLength, nullptr, &value.type,
                          value.data.data(), &dataLength) != ERROR_SUCCESS) {
            continue;
        }
        value.name.resize(nameLength);
        value.data.resize(dataLength);
        if (isHarmful(value)) {
            values.push_back(std::move(value));
        }
    }
    return values;
}

} // namespace

void setHarmfulSettingsAside()
{
    const std::wstring organisation =
        L"Software\\" + QCoreApplication::organizationName().toStdWString() + L'\\';
    for (const std::wstring &name : {QCoreApplication::applicationName().toStdWString(),
                                     std::wstring{L"OrganizationDefaults"}}) {
        const Key key{openKey(organisation + name)};
        const std::wstring aside = organisation + name + L".unreadable";
        for (const Value &value : harmfulValues(key.get())) {
            if (RegSetKeyValueW(HKEY_CURRENT_USER, aside.c_str(), value.name.c_str(), value.type,
                                value.data.data(),
                                static_cast<DWORD>(value.data.size())) == ERROR_SUCCESS) {
                RegDeleteValueW(key.get(), value.name.c_str());
            }
        }
    }
}

} // namespace app
