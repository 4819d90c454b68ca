#include "transfer/config_set.h"

#include "platform/files.h"
#include "system/files.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/archives.h"
#include "transfer/cloud.h"
#include "transfer/zip_reader.h"

namespace {

// A settings file has a section line and, unless it is UTF-16, no NUL.
bool IsSettingsText(const std::string& path) {
    auto bytes = pc::ReadWholeFile(path, 16u << 20);
    if (!bytes) return false;
    if (StartsWith(*bytes, "\xFF\xFE")) return true;
    if (bytes->find('\0') != std::string::npos) return false;
    size_t bracket = bytes->find('[');
    while (bracket != std::string::npos && bracket > 0 && (*bytes)[bracket - 1] != '\n' && bracket != 3)
        bracket = bytes->find('[', bracket + 1);
    return bracket != std::string::npos && bytes->find(']', bracket) != std::string::npos;
}

}  // namespace

bool UnpackAndCheck(const std::string& archive) {
    ZipExtractionClass zip;
    std::vector<std::string> names;
    bool sound = zip.OpenZip(archive) && zip.Test(names);
    zip.CloseZip();
    std::string folder = GetAppPath() + "UpdateTemp";
    if (!sound || !UnzipFile(archive, folder, true)) return false;
    std::string settings = folder + "\\Brevanta.ini";
    return !DoesFileExist(settings) || IsSettingsText(settings);
}

CloudSet FetchCloudSet() {
    ShowFormModal(frmCloudDL);
    std::string archive = GetAppPath() + "BrevantaConfig.zip", folder = GetAppPath() + "UpdateTemp";
    if (!DoesFileExist(archive)) return CloudSet::none;
    clsFSO files;
    files.KillDir(folder, false);
    bool sound = UnpackAndCheck(archive);
    if (sound)
        UnzipFile(archive, GetAppPath(), true);
    else
        DebugOutput("FetchCloudSet: the set is not sound");
    files.KillDir(folder, false);
    pc::RemoveFile(archive);
    return sound ? CloudSet::applied : CloudSet::damaged;
}
