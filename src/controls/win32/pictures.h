// Pictures from files: BMP, JPG, PNG and GIF with their alpha, by GDI+ or, where it is absent, by OLE (no PNG then).
#pragma once

#include <windows.h>
// behind windows.h
#include <ocidl.h>

#include <memory>
#include <string>

#include "platform/win32/handles.h"

namespace host {

class Picture {
public:
    ~Picture();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    // Null when the file is missing or no picture; the file is not held open.
    static std::unique_ptr<Picture> Load(const std::string& path);
    SIZE Size() const { return size; }  // pixels
    void Draw(HDC dc, const RECT& target) const;

private:
    Picture() = default;
    bool Decode(IStream* stream);

    pc::Com<IStream> source;  // GDI+ reads from it while the picture lives
    void* image = nullptr;    // of GDI+
    pc::Com<IPicture> olePicture;
    SIZE size = {};
};

}  // namespace host
