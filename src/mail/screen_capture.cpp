#include "mail/screen_capture.h"

#include "platform/files.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/trace.h"

namespace {

// Little-endian numbers as the file format has them.
void Put(std::string& bytes, uint32_t value, int size) {
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

// BITMAPFILEHEADER and BITMAPINFOHEADER with the palette behind them.
std::string BitmapHeader(const pc::Bitmap& bitmap, int depth, const std::string& palette, size_t imageSize) {
    auto headerSize = static_cast<uint32_t>(40 + palette.size()), size = static_cast<uint32_t>(imageSize);
    std::string bytes = "BM";
    Put(bytes, 14 + headerSize + size, 4);
    Put(bytes, 0, 4);
    Put(bytes, 14 + headerSize, 4);
    Put(bytes, 40, 4);
    Put(bytes, static_cast<uint32_t>(bitmap.width), 4);
    Put(bytes, static_cast<uint32_t>(bitmap.height), 4);
    Put(bytes, 1, 2);
    Put(bytes, static_cast<uint32_t>(depth), 2);
    Put(bytes, 0, 4);
    Put(bytes, size, 4);
    bytes.append(16, '\0');  // resolution, and colours used and needed: all
    return bytes + palette;
}

}  // namespace

bool CaptureScreen(pc::Bitmap& bitmap) {
    return pc::CaptureWindow(pc::DesktopWindow(), false, 0, 0, pc::ScreenWidth(), pc::ScreenHeight(), bitmap);
}

bool SaveBitmapColours(const pc::Bitmap& bitmap, const std::string& path, int colours) {
    int depth = colours == 4 || colours == 16 ? 4 : colours == 8 || colours == 256 ? 8 : 1;
    std::string palette, pixels;
    if (!pc::ReduceColours(bitmap, depth, palette, pixels)) return false;
    pc::RemoveFile(path);
    if (pc::WriteWholeFile(path, BitmapHeader(bitmap, depth, palette, pixels.size()) + pixels)) return true;
    pc::RemoveFile(path);  // half a picture
    return false;
}

void TakeScreenCapture() {
    std::string folder = GetAppPath() + "InfoTemp";
    if (!DoesDirExist(folder)) MakeFolderPath(folder);
    Pause(0.5);
    pc::Bitmap bitmap;
    if (CaptureScreen(bitmap)) SaveBitmapColours(bitmap, folder + "\\ScreenCapture.bmp", 256);
}
