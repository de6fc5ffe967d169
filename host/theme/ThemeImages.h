#pragma once

/// The images that panels name "theme:", such as "theme:picker_black.png", compiled into this library for
/// screens with one and with two device pixels to the unit.
namespace ThemeImages {

/// Lets Qt find them under their names. A program that has "theme:" images of its own keeps them: they come
/// first. Every adjustment widget does this before it builds its form, so hardly anybody else needs to.
void Install();

} // namespace ThemeImages
