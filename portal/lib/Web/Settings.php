<?php

declare(strict_types=1);

namespace Portal\Web;

/** The settings of a site: an .ini file whose name is in the environment variable or FastCGI parameter PORTAL_SETTINGS. */
final class Settings
{
    private const DEFAULTS = [
        'title' => 'Archive',
        'style' => '',
        'logo' => '',
        'hosts' => '',
        'user' => '',
        'password' => '',
        'timeout' => '30',
        'blob_local' => '',
        'blob_remote' => '',
        'log_dir' => '',
        'database' => '',
        'administration' => '',
        'administration_user' => '',
        'administration_password' => '',
        'state_dir' => '',
        'idle_minutes' => '30',
        'session_hours' => '10',
        'search_limit' => '1000',
        'fields' => '10=title, 11=author, 12=customer, 13=type, 14=date, 15=amount, 16=text',
        'layouts' => '',
        'image_field' => '20',
        'file_field' => '30',
        'upload_megabytes' => '64',
        'kept_megabytes' => '2048',
    ];

    private function __construct(
        public readonly string $title,
        /** paths on this site; "" for none */
        public readonly string $style,
        public readonly string $logo,
        public readonly string $hosts,
        public readonly string $user,
        #[\SensitiveParameter] public readonly string $password,
        public readonly int $timeout,
        public readonly string $blobLocal,
        public readonly string $blobRemote,
        public readonly string $logDir,
        #[\SensitiveParameter] public readonly string $database,
        #[\SensitiveParameter] public readonly string $administration,
        public readonly string $administrationUser,
        #[\SensitiveParameter] public readonly string $administrationPassword,
        public readonly string $stateDir,
        public readonly int $idleMinutes,
        public readonly int $sessionHours,
        public readonly int $searchLimit,
        /** @var array<int|string, string> names of the archive's fields by id, as masks and queries name them */
        public readonly array $fields,
        /** @var array<int|string, string> titles of the layouts of hit lists by id */
        public readonly array $layouts,
        /** ids of the first field for images and for other files of a document */
        public readonly int $imageField,
        public readonly int $fileField,
        /** the most megabytes of an uploaded file, unless PHP's limits are lower */
        public readonly int $uploadMegabytes,
        /** the most megabytes of files that are kept for the further parts that a browser asks for */
        public readonly int $keptMegabytes,
    ) {
    }

    /** Raises \RuntimeException, which says what to change in which file. */
    public static function read(string $file): self
    {
        $given = $file === '' ? false : @parse_ini_file($file, false, INI_SCANNER_RAW);
        if ($given === false) {
            throw new \RuntimeException("PORTAL_SETTINGS names no .ini file that can be read: \"$file\"");
        }
        foreach ($given as $name => $value) {
            if (!isset(self::DEFAULTS[$name]) || !\is_string($value)) {
                throw new \RuntimeException("$file: there is no setting \"$name\"; see portal/README.md");
            }
        }
        $text = static fn(string $name): string => $given[$name] ?? self::DEFAULTS[$name];
        $number = static function (string $name, int $most) use ($text, $file): int {
            if (!preg_match('/^\d{1,9}$/D', $text($name)) || (int) $text($name) < 1 || (int) $text($name) > $most) {
                throw new \RuntimeException("$file: the setting \"$name\" is a number from 1 to $most");
            }
            return (int) $text($name);
        };
        $pairs = static function (string $name) use ($text, $file): array {
            $pairs = [];
            foreach (preg_split('/\s*,\s*/', trim($text($name)), -1, PREG_SPLIT_NO_EMPTY) as $pair) {
                if (!preg_match('/^(\w+)\s*=\s*(\S.*)$/uD', $pair, $part)) {
                    throw new \RuntimeException("$file: the setting \"$name\" is a list ID=NAME, separated by \",\"");
                }
                $pairs[$part[1]] = $part[2];
            }
            return $pairs;
        };
        // The pages' policy allows nothing from other sites.
        $place = static fn(string $name): string => $text($name) === '' || Request::isLocal($text($name))
            ? $text($name)
            : throw new \RuntimeException("$file: the setting \"$name\" is a path on this site, as \"/site/name.css\"");
        foreach (['hosts', 'database', 'state_dir'] as $needed) {
            $text($needed) !== '' || throw new \RuntimeException("$file: the setting \"$needed\" is missing");
        }
        if (!is_dir($text('state_dir')) || !is_writable($text('state_dir'))) {
            throw new \RuntimeException("$file: the directory \"state_dir\" does not exist, or cannot be written to");
        }
        return new self(
            $text('title'),
            $place('style'),
            $place('logo'),
            $text('hosts'),
            $text('user'),
            $text('password'),
            $number('timeout', 86400),
            $text('blob_local'),
            $text('blob_remote'),
            $text('log_dir'),
            $text('database'),
            $text('administration'),
            $text('administration_user'),
            $text('administration_password'),
            $text('state_dir'),
            $number('idle_minutes', 1440),
            $number('session_hours', 168),
            $number('search_limit', 100000),
            $pairs('fields'),
            $pairs('layouts'),
            $number('image_field', 32767),
            $number('file_field', 32767),
            $number('upload_megabytes', 2047),
            $number('kept_megabytes', 1000000),
        );
    }
}
