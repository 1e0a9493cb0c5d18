#include "media/CloudProviderType.h"

namespace sorvane {

QString toRaw(CloudProviderType provider)
{
    switch (provider) {
    case CloudProviderType::googleDrive:
        return QStringLiteral("google_drive");
    case CloudProviderType::googlePhotos:
        return QStringLiteral("google_photos");
    case CloudProviderType::icloud:
        return QStringLiteral("icloud_photos");
    case CloudProviderType::dropbox:
        return QStringLiteral("dropbox");
    case CloudProviderType::onedrive:
        return QStringLiteral("onedrive");
    }
    return {};
}

template <> std::optional<CloudProviderType> fromRaw<CloudProviderType>(QStringView raw)
{
    for (const CloudProviderType provider : allCloudProviderTypes) {
        if (raw == toRaw(provider))
            return provider;
    }
    return std::nullopt;
}

QString displayName(CloudProviderType provider)
{
    switch (provider) {
    case CloudProviderType::googleDrive:
        return QStringLiteral("Google Drive");
    case CloudProviderType::googlePhotos:
        return QStringLiteral("Google Photos");
    case CloudProviderType::icloud:
        return QStringLiteral("iCloud Photos");
    case CloudProviderType::dropbox:
        return QStringLiteral("Dropbox");
    case CloudProviderType::onedrive:
        return QStringLiteral("OneDrive");
    }
    return {};
}

QString icon(CloudProviderType provider)
{
    switch (provider) {
    case CloudProviderType::googleDrive:
        return QStringLiteral(u"\U0001F310");
    case CloudProviderType::googlePhotos:
        return QStringLiteral(u"\U0001F4F7");
    case CloudProviderType::icloud:
        return QStringLiteral(u"\u2601\uFE0F");
    case CloudProviderType::dropbox:
        return QStringLiteral(u"\U0001F4E6");
    case CloudProviderType::onedrive:
        return QStringLiteral(u"\U0001F537");
    }
    return {};
}

} // namespace sorvane
