<?php

declare(strict_types=1);

namespace Portal\Files;

use Portal\Web\Failure;

/**
 * A page of a TIFF file as PNG, for browsers, which show no TIFF. By the extension imagick, which gets a copy of the page that
 * another process has made: Imagick shows the rest of a damaged page as if it were whole.
 */
final class PageImage
{
    private const MOST_PIXELS = 40000000;
    /** of the copy, which is not compressed */
    private const MOST_BYTES = 200000000;
    /** of processor time, after which PHP ends the process */
    private const SECONDS = 60;
    /** Bytes and pixels. What does not fit into the memory goes into files that are mapped into it. */
    private const LIMITS = [
        \Imagick::RESOURCETYPE_THREAD => 1,
        \Imagick::RESOURCETYPE_AREA => 16000000,
        \Imagick::RESOURCETYPE_MEMORY => 160000000,
        \Imagick::RESOURCETYPE_MAP => 640000000,
        \Imagick::RESOURCETYPE_DISK => 640000000,
        // Not RESOURCETYPE_TIME: it counts from the first image of a process on, and ends the process.
    ];
    /** How images of these types are stored; all others in colour. */
    private const FORMS = [
        \Imagick::IMGTYPE_BILEVEL => ['png:color-type' => '0', 'png:bit-depth' => '1'],
        \Imagick::IMGTYPE_GRAYSCALE => ['png:color-type' => '0', 'png:bit-depth' => '8'],
        \Imagick::IMGTYPE_TRUECOLORMATTE => ['png:color-type' => '6', 'png:bit-depth' => '8'],
    ];
    private const COLOUR = ['png:color-type' => '2', 'png:bit-depth' => '8'];
    /** Scanned pages need no better ones. */
    private const COMPRESSION = ['png:compression-level' => '3', 'png:compression-filter' => '0'];

    /**
     * Raises Failure without the extension or the program, for a file that is no TIFF file or damaged, and for a page that
     * it does not have.
     *
     * @param resource $file a temporary file
     * @param int $page counted from 1
     * @return resource a temporary file
     */
    public static function png(mixed $file, int $page): mixed
    {
        \extension_loaded('imagick') || throw Failure::notInstalled('php-imagick');
        TiffCopy::require();
        $copy = TemporaryFile::open();
        if (!TiffCopy::run($file, $copy, self::MOST_BYTES, $page, '-c', 'none')) {
            throw $page > 1 && TiffCopy::run($file, $copy, self::MOST_BYTES, 1, '-c', 'none')
                ? Failure::noFile()
                : new Failure('no-image', 415);
        }
        set_time_limit(self::SECONDS);
        foreach (self::LIMITS as $resource => $limit) {
            \Imagick::setResourceLimit($resource, $limit);
        }
        try {
            return self::encoded(self::read(TemporaryFile::path($copy)));
        } catch (\ImagickException $error) {
            error_log('portal: ' . $error->getMessage());
            throw new Failure('no-image', 415);
        }
    }

    private static function read(string $path): \Imagick
    {
        // The prefix keeps Imagick from choosing another decoder.
        $image = new \Imagick();
        $image->pingImage("tiff:{$path}[0]");
        if ($image->getImageWidth() * $image->getImageHeight() > self::MOST_PIXELS) {
            throw new Failure('no-image', 415);
        }
        $image = new \Imagick();
        $image->readImage("tiff:{$path}[0]");
        $image->autoOrient();
        $image->stripImage();
        if ($image->getImageColorspace() === \Imagick::COLORSPACE_CMYK) {
            $image->transformImageColorspace(\Imagick::COLORSPACE_SRGB);
        }
        return $image;
    }

    /** @return resource */
    private static function encoded(\Imagick $image): mixed
    {
        $image->setImageFormat('png');
        foreach ((self::FORMS[$image->getImageType()] ?? self::COLOUR) + self::COMPRESSION as $option => $value) {
            $image->setOption($option, $value);
        }
        $png = TemporaryFile::open();
        $image->writeImageFile($png, 'png');
        return $png;
    }
}
