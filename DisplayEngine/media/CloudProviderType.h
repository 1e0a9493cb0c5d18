#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// The online stores an item or a folder can come from.
enum class CloudProviderType { googleDrive, googlePhotos, icloud, dropbox, onedrive };

// Every store, in the order pickers list them.
inline constexpr std::array<CloudProviderType, 5> allCloudProviderTypes {CloudProviderType::googleDrive,
    CloudProviderType::googlePhotos, CloudProviderType::icloud, CloudProviderType::dropbox,
    CloudProviderType::onedrive};

// "google_drive", "google_photos", "icloud_photos", "dropbox" or "onedrive".
QString toRaw(CloudProviderType provider);
template <> std::optional<CloudProviderType> fromRaw<CloudProviderType>(QStringView raw);

// The store's name as shown to the user, e.g. "Google Drive".
QString displayName(CloudProviderType provider);
// An emoji shown before the name in lists; two code points for iCloud (cloud
// plus the emoji presentation selector).
QString icon(CloudProviderType provider);

} // namespace sorvane
