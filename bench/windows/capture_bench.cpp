// The picture of the screen and its reduction to 256 colours, against the bare platform calls.
#include "comparison.h"

#include "mail/screen_capture.h"
#include "system/program_state.h"

namespace {

const wchar_t bareFile[] = L"C:\\bare.bmp";

HBITMAP BareCapture(int width, int height) {
    HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, 0, 0, SRCCOPY);
    SelectObject(memory, before);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return bitmap;
}

void BareSave(HBITMAP bitmap, int width, int height) {
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colours[256];
    } info = {{sizeof(BITMAPINFOHEADER), width, height, 1, 8, BI_RGB, 0, 0, 0, 0, 0}, {}};
    std::vector<char> pixels(static_cast<size_t>((width + 3) / 4 * 4) * static_cast<size_t>(height));
    HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, static_cast<UINT>(height), pixels.data(), reinterpret_cast<BITMAPINFO*>(&info),
              DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    HANDLE file = CreateFileW(bareFile, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, &info, sizeof info, &written, nullptr);
    WriteFile(file, pixels.data(), static_cast<DWORD>(pixels.size()), &written, nullptr);
    CloseHandle(file);
}

}  // namespace

int main() {
    int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    std::vector<double> capture, bareCapture, save, bareSave;
    for (int round = 0; round < 9; ++round) {
        pc::Bitmap picture;
        capture.push_back(Measure([&] { CaptureScreen(picture); }));
        HBITMAP bare = nullptr;
        bareCapture.push_back(Measure([&] { bare = BareCapture(width, height); }));
        save.push_back(Measure([&] { SaveBitmapColours(picture, "C:\\ours.bmp", 256); }));
        bareSave.push_back(Measure([&] { BareSave(bare, width, height); }));
        DeleteObject(bare);
    }
    std::string size = std::to_string(width) + " x " + std::to_string(height);
    Row(("picture of the screen, " + size + ", ms").c_str(), Median(capture), Median(bareCapture), 1.3);
    Row(("to 256 colours and a file, " + size + ", ms").c_str(), Median(save), Median(bareSave), 1.3);
    return 0;
}
