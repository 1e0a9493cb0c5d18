#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// How the file-name line writes the current item's name. The raw value is the label and is stored.
enum class FileDisplayFormat { filenameOnly, fullPath, folderAndFilename };

inline constexpr std::array<FileDisplayFormat, 3> allFileDisplayFormats {
    FileDisplayFormat::filenameOnly, FileDisplayFormat::fullPath, FileDisplayFormat::folderAndFilename};

// "Filename Only", "Full Path", "Folder/Filename".
QString toRaw(FileDisplayFormat format);
template <> std::optional<FileDisplayFormat> fromRaw<FileDisplayFormat>(QStringView raw);

} // namespace sorvane
