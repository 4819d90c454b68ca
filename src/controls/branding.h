// The technician's name and picture, for every form that shows them.
#pragma once

#include <string>

// Company name of the settings, or the built-in one.
std::string BrandName();
// Full path of the logo: the first of supportlogo.jpg, .gif, .png that exists, otherwise supportlogo.bmp untested.
std::string LogoFile();

// What kind of logo the settings choose; each form has its own box for each kind.
enum class LogoKind { asDesigned, square, rectangle, longRectangle, large };
LogoKind ConfiguredLogoKind();
