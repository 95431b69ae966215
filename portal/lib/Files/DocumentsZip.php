<?php

declare(strict_types=1);

namespace Portal\Files;

use Oxaqrycln\AllServersBusy;
use Oxaqrycln\Cancelled;
use Oxaqrycln\ConnectionFailed;
use Oxaqrycln\Content;
use Oxaqrycln\Error;
use Oxaqrycln\Hit;
use Oxaqrycln\Refused;
use Oxaqrycln\TimedOut;
use Portal\Documents\DocumentRequest;
use Portal\Web\Failure;
use Portal\Web\Visit;

/**
 * Writes the first stored file of each of some documents to the output as a ZIP archive, one after the other, with a report
 * of those that have none or were refused.
 */
final class DocumentsZip
{
    public const MOST = 500;
    private const SECONDS_EACH = 120;

    private readonly ZipWriter $zip;
    /** @var list<string> lines of the report */
    private array $stored = [];
    /** @var list<string> */
    private array $missing = [];
    private bool $isOver = false;

    public function __construct(private readonly Visit $visit)
    {
        $this->zip = new ZipWriter(fopen('php://output', 'wb'), new \DateTimeImmutable());
    }

    /**
     * @param list<Hit> $hits
     * @param int $lost how many more were selected that the search does not find any more
     */
    public function write(array $hits, int $lost): void
    {
        foreach ($hits as $hit) {
            set_time_limit(self::SECONDS_EACH + $this->visit->settings->timeout);
            $reason = $this->isOver ? $this->text('zip-not-tried') : $this->add($hit);
            if ($reason !== '') {
                $this->missing[] = self::line(self::nameOf($hit), $reason, $hit);
            }
        }
        $this->zip->addText($this->text('zip-report') . '.txt', "\u{FEFF}" . $this->report($lost));
        $this->zip->end();
    }

    /** @return string the reason why the document's file is missing; "" when it is there */
    private function add(Hit $hit): string
    {
        $file = tmpfile();
        if ($file === false) {
            return $this->text('zip-failed');
        }
        try {
            DocumentRequest::ofName($hit)->checkFile($this->visit, null);
            $path = $this->visit->archive()->fetch($hit, Content::firstFile(), into: $file);
        } catch (Failure) {
            return $this->text('zip-forbidden');
        } catch (Refused $refused) {
            return $this->text('zip-refused') . ' ' . $refused->getMessage();
        } catch (AllServersBusy | ConnectionFailed | TimedOut | Cancelled) {
            // Each further document would wait as long.
            $this->isOver = true;
            return $this->text('zip-no-server');
        } catch (Error $error) {
            error_log('portal: ' . $error::class . ': ' . $error->getMessage());
            return $this->text('zip-failed');
        }
        if ($path === null) {
            return $this->text('zip-no-file');
        }
        if (!$this->zip->hasRoomFor((int) fstat($file)['size'])) {
            return $this->text('zip-no-room');
        }
        $name = $this->zip->add(FileName::of(self::nameOf($hit) . self::extension($path)), $file);
        fclose($file);
        $this->stored[] = self::line($name, '', $hit);
        return '';
    }

    private function text(string $key): string
    {
        return $this->visit->h->locale->text($key);
    }

    private function report(int $lost): string
    {
        $locale = $this->visit->h->locale;
        $heading = static fn(string $key, int $count): string =>
            strtr($locale->text($key), ['{0}' => $locale->number($count)]);
        $lines = [$heading('zip-stored', \count($this->stored)), ...$this->stored];
        if ($this->missing !== []) {
            $lines = [...$lines, '', $heading('zip-missing', \count($this->missing)), ...$this->missing];
        }
        if ($lost > 0) {
            $lines = [...$lines, '', $heading('zip-lost', $lost)];
        }
        return implode("\r\n", $lines) . "\r\n";
    }

    private static function line(string $name, string $reason, Hit $hit): string
    {
        $line = "$name ($hit->channel/$hit->archive, $hit->id/$hit->version)" . ($reason === '' ? '' : ": $reason");
        return preg_replace('/[\x00-\x1F\x7F]+/', ' ', $line);
    }

    /** Titles hold characters that have a meaning in paths, and words that are devices on some systems. */
    private static function nameOf(Hit $hit): string
    {
        $title = trim(preg_replace('~[/\\\\]+~', '-', $hit->values[0] ?? ''), " .\u{A0}");
        $isUsable = $title !== '' && !preg_match('/^(con|prn|aux|nul|com\d|lpt\d)(\.|$)/i', $title);
        return $isUsable ? $title : "$hit->archive $hit->id";
    }

    private static function extension(string $path): string
    {
        return preg_match('/\.([a-z0-9]{1,10})$/iD', $path, $part) ? '.' . strtolower($part[1]) : '';
    }
}
