#pragma once

/// A place where one party puts a picture, a KVImage or a QImage, and another looks for the present one.
///
/// Pictures are shared values, so who took one keeps it when another takes its place. Not for use from
/// several threads at once.
template <class Image>
class YDSharedImage
{
public:
    YDSharedImage() = default;
    explicit YDSharedImage(const Image& image) : m_image(image) {}

    const Image& GetImage() const { return m_image; }
    void SetImage(const Image& image) { m_image = image; }

private:
    Image m_image;
};
