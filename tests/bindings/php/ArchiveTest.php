<?php

declare(strict_types=1);

use Oxaqrycln\Account;
use Oxaqrycln\Archive;
use Oxaqrycln\BadArgument;
use Oxaqrycln\Cancelled;
use Oxaqrycln\ColumnKind;
use Oxaqrycln\Content;
use Oxaqrycln\DocumentName;
use Oxaqrycln\Error;
use Oxaqrycln\FieldContent;
use Oxaqrycln\FileFailed;
use Oxaqrycln\Hit;
use Oxaqrycln\HitList;
use Oxaqrycln\Mark;
use Oxaqrycln\MarkedText;
use Oxaqrycln\Order;
use Oxaqrycln\Refused;
use Oxaqrycln\Text;
use PHPUnit\Framework\TestCase;

/** The upper level against the development server. */
final class ArchiveTest extends TestCase
{
    private Archive $archive;

    protected function setUp(): void
    {
        $this->archive = new Archive(
            hosts: getenv('OXAQRY_HOSTS'),
            user: 'webuser',
            password: 'secret',
            blobLocal: getenv('OXAQRY_BLOBS'),
            database: getenv('OXAQRY_DATABASE'),
        );
    }

    public function testListsWhatTheServerOffers(): void
    {
        $archive = $this->archive;
        $channels = $archive->archives();
        self::assertSame('Büro', $archive->channels()[0]->name);
        self::assertSame('Letters sent', $channels[0]->archives[1]->comment);
        self::assertSame([], end($channels)->archives);
        self::assertContains('Full text', $archive->formats('Mail', 'Inbox'));
        self::assertTrue($archive->properties('Büro', 'Protokolle')->canCreate);
        $masks = $archive->masks('Finance', 'Orders');
        self::assertCount(2, $masks);
        self::assertTrue($masks[1]->fields[1]->isListOnly);
        self::assertSame(40, $masks[0]->fields[0]->width);
        self::assertStringContainsString('alive', $archive->live());
        self::assertStringContainsString('alive', $archive->direct('^LiveCheck^')[0]);
        self::assertNotSame([], $archive->orders());
    }

    public function testAHitListIsReadWhenItIsAskedForAndOwnsItsRows(): void
    {
        $archive = $this->archive;
        $hits = $archive->search('copper', max: 10, layout: '2');
        $others = $archive->search('copper', max: 3);
        $archive->channels();  // replaces the records of the component
        self::assertCount(10, $hits);
        self::assertSame([10, 3], [iterator_count($hits), iterator_count($others)]);
        self::assertGreaterThan(10, $hits->total);
        self::assertSame('Customer', $hits->layout[12]);
        self::assertSame([$others[2]->id, $others[2]->version], [$hits[2]->id, $hits[2]->version]);
        self::assertSame($hits[2]->value('Title'), $archive->describe($hits[2])->title);
        self::assertSame($hits[4]->values[$hits->column('title')], $hits[4]->value('TITLE'));
        self::assertSame('', $hits[4]->value(99));
        self::assertSame([ColumnKind::Text, ColumnKind::Number], array_map(
            static fn(string $title): ColumnKind => $hits->kindOf($hits->column($title)),
            ['Title', 'Amount'],
        ));
    }

    public function testAHitListIsSortedAndShortened(): void
    {
        $hits = $this->archive->search('copper', max: 20);
        $titles = static fn(): array => array_map(static fn(Hit $hit): string => $hit->value('Title'), [...$hits]);
        $expected = $titles();
        sort($expected, SORT_STRING);
        $hits->sort($hits->column('Title'));
        self::assertSame($expected, $titles());
        $hits->sort($hits->column('Title'), Order::Descending);
        self::assertSame(array_reverse($expected), $titles());
        $second = $hits[1];
        $hits->remove(0);
        self::assertEquals($second, $hits[0]);
        self::assertCount(19, $hits);
        self::assertFalse(isset($hits[19]));
        self::assertEquals([$hits[17], $hits[18]], $hits->slice(17, 5));
        $hits = $this->archive->search('copper', max: 20);
        $copy = clone $hits;
        $walk = $hits->getIterator();
        $hits->remove(0);
        self::assertEquals([...$copy], [...$walk]);
        $unread = $this->archive->search('copper', max: 20);
        $this->archive->close();
        self::assertEquals([...$hits], $unread->slice(1));
        $this->setUp();
        $sorted = $this->archive->search('copper', max: 20, sort: 'Title', order: Order::Descending);
        self::assertSame($expected[19], $sorted[0]->value('Title'));
    }

    public function testRightsFailClosed(): void
    {
        foreach (['', ';', ' ; '] as $nothing) {
            self::assertCount(0, $this->archive->search('copper', folderRights: $nothing), "\"$nothing\"");
        }
        $found = $this->archive->search('copper', folderRights: '$(#Mail);');
        self::assertNotCount(0, $found);
        foreach ($found as $hit) {
            self::assertSame('Mail', $hit->channel);
        }
    }

    public function testADocumentHasItsMarksInCharacters(): void
    {
        $document = $this->archive->document(new DocumentName('Mail', 'Inbox', '1262'), 'price');
        self::assertSame('2', $document->name->version);
        self::assertInstanceOf(DateTimeImmutable::class, $document->created);
        $marked = 0;
        foreach ($document->segments as $segment) {
            self::assertCount($segment->hitCount, $segment->text->marks);
            $pieces = $segment->text->pieces();
            self::assertSame($segment->text->text, implode('', array_column($pieces, 'text')));
            $isHit = static fn($piece): bool => $piece->isMarked && $piece->text === 'price';
            $marked += \count(array_filter($pieces, $isHit));
        }
        self::assertGreaterThan(0, $marked);
        $text = new MarkedText("ä\x01€\x02 \x01price\x02");
        self::assertSame('ä€ price', (string) $text);
        self::assertEquals([new Mark(1, 1), new Mark(3, 5)], $text->marks);
    }

    public function testADocumentIsCreatedEditedAndDeletedWithoutAnImportFileLeft(): void
    {
        $archive = $this->archive;
        $evil = "first\r\n@FIELD,12\r\nHafenkontor\n@DB,$(#Mail)\\Inbox\r\n@end";
        $name = $archive->create('Finance', 'Orders', 'Bestellung über Rohre', [
            new FieldContent(11, 'Anna'),
            new FieldContent(16, $evil),
        ]);
        $made = $archive->document($name);
        self::assertSame(['1', 'Bestellung über Rohre'], [$name->version, $made->title]);
        $text = array_column($made->segments, null, 'fieldId')[16]->text->text;
        self::assertStringContainsString('@FIELD,12', $text);
        self::assertStringContainsString('@end', $text);
        $archive->addNote($name, "Bitte prüfen,\ndann weiter\n");
        $note = $archive->document($name)->notes[0];
        self::assertSame(['webuser', "Bitte prüfen,\ndann weiter"], [$note->author, $note->text]);
        self::assertLessThan(86400, abs($note->time->getTimestamp() - time()));
        $archive->deleteNotes($name);
        self::assertSame([], $archive->notes($name));
        $name = $archive->edit($name, 'Neue Bestellung', [new FieldContent(16, 'second')]);
        self::assertSame('2', $name->version);
        $archive->delete(new DocumentName('Finance', 'Orders', $name->id));
        self::assertRaises(Refused::class, $name->id, fn() => $archive->describe($name));
        self::assertSame([], glob(getenv('OXAQRY_BLOBS') . '/*.import'));
    }

    public function testFilesMoveInBothDirections(): void
    {
        $archive = $this->archive;
        $name = new DocumentName('Mail', 'Inbox', '1262', '2');
        self::assertSame(56, filesize($archive->fetch($name, Content::ofSegment(6))));
        $sent = getenv('OXAQRY_DIRECTORY') . '/Größe.bin';
        file_put_contents($sent, "\0\r\nbytes");
        $archive->upload($sent);
        self::assertSame("\0\r\nbytes", file_get_contents($archive->transfer('Größe.bin', 8)));
        symlink($sent, $link = "$sent.link");
        $archive->upload($link);  // under the name of the link
        $archive->upload($link, 'ä.bin');
        fwrite($stream = fopen('php://temp', 'w+'), 'streamed') && rewind($stream);
        $archive->upload($stream, 'b.bin');
        $into = fopen('php://temp', 'w+');
        $received = array_map(static fn(string $file): string => $archive->transfer($file, 8, $into), [
            'Größe.bin.link', 'ä.bin', 'b.bin']);
        self::assertSame(str_repeat("\0\r\nbytes", 2) . 'streamed', stream_get_contents($into, null, 0));
        self::assertSame([], array_filter($received, is_file(...)));
        self::assertSame([], glob(sys_get_temp_dir() . '/oxaqrycln-upload-*'));
        self::assertFileDoesNotExist($archive->fetch($name, Content::ofSegment(6), $into));
        self::assertRaises(Error::class, 'copied to the stream', fn() => $archive->transfer('Größe.bin', 8, fopen($sent, 'r')));
        self::assertNotNull($archive->fetch($name, Content::firstFile()));  // into the archive's own directory again
        self::assertStringStartsWith('%PDF', file_get_contents($archive->printHits('copper', 'Kupfer', sort: 'Title')));
        self::assertRaises(Refused::class, '', fn() => $archive->fetch($name, Content::firstFile('nix')));
        $archive->testBlobDirectory();
    }

    public function testAFileOfAnotherDirectoryIsAnError(): void
    {
        $elsewhere = getenv('OXAQRY_DIRECTORY') . '/elsewhere';
        @mkdir($elsewhere);
        $archive = new Archive(
            hosts: getenv('OXAQRY_HOSTS'),
            user: 'webuser',
            password: 'secret',
            blobLocal: $elsewhere,
            blobRemote: getenv('OXAQRY_BLOBS'),
        );
        $name = new DocumentName('Mail', 'Inbox', '1262', '2');
        self::assertRaises(Error::class, 'is not there', fn() => $archive->fetch($name, Content::ofSegment(6)));
    }

    public function testADocumentWhoseImportFileCannotBeWrittenIsNotMade(): void
    {
        $archive = new Archive(
            hosts: getenv('OXAQRY_HOSTS'),
            user: 'webuser',
            password: 'secret',
            blobLocal: getenv('OXAQRY_DIRECTORY') . '/missing',
        );
        self::assertRaises(FileFailed::class, 'import file', fn() => $archive->create('Finance', 'Orders', 'a'));
        self::assertFalse($archive->lastRequest()->wasSent);
    }

    public function testWhatCannotBeSentIsRefusedBeforeARequest(): void
    {
        $archive = $this->archive;
        $hits = new HitList();
        $cases = [
            'separator' => ['separates the fields', fn() => $archive->search('a^,^b')],
            'end of a field' => ['separates the fields', fn() => $archive->search('a^,')],
            'foreign character' => ['the query: character 4', fn() => $archive->search('ok Łódź')],
            'no UTF-8' => ['character 1', fn() => $archive->formats("\xFF", '')],
            'limit' => ['limits', fn() => $archive->search('a', max: -1)],
            'title of two lines' => ['control character', fn() => $archive->create('Finance', 'Orders', "two\nlines")],
            'title with a field' => ['takes for a field', fn() => $archive->create('Finance', 'Orders', 'Rohre,x, 1 : 11')],
            'file' => ['there is no file', fn() => $archive->upload('/none')],
            'file with a path for a name' => ['without directories', fn() => $archive->upload('/none', 'a/b')],
            'name with a NUL' => ['control character', fn() => $archive->upload('/none', "a\0")],
            'stream without a name' => ['without directories', fn() => $archive->upload(STDIN)],
            'no stream' => ['open stream', fn() => $archive->transfer('a', 1, 'out')],
            'password' => ['the password: character 7', fn() => new Archive(password: 'secretŁ')],
            'note' => ['8000', fn() => $archive->addNote(new DocumentName('a', 'b', 'c'), str_repeat('ä', 8001))],
            'column' => ['no column', fn() => $hits->sort(0)],
            'title of a column' => ['no column "none"', fn() => $hits->column('none')],
            'title that is no UTF-8' => ['no column "?"; ', fn() => $archive->search('copper', sort: "\xFF")],
            'hit' => ['no hit', fn() => $hits[0]],
            'assignment' => ['assigned', function () use ($hits): void {
                $hits[0] = 1;
            }],
            'time-out' => ['time-out', fn() => new Archive(timeout: 0)],
            'other servers' => ['other query servers', fn() => new Archive(hosts: '127.0.0.1,9')],
        ];
        foreach ($cases as $case => [$text, $call]) {
            self::assertRaises(BadArgument::class, $text, $call, $case);
        }
    }

    public function testWhatHoldsHandlesOrPasswordsIsNeitherCopiedNorShown(): void
    {
        $archive = $this->archive;
        $cases = [
            'clone' => ['cannot be cloned', fn() => clone $archive],
            'clone of the instance' => ['cannot be cloned', fn() => clone $archive->query()],
            'session' => ['cannot be serialized', fn() => serialize(['archive' => $archive])],
            'users' => ['cannot be serialized', fn() => serialize($archive->users())],
            'hit list' => ['keep its hits', fn() => serialize($archive->search('copper'))],
            'made of a text' => ['cannot be unserialized', fn() => unserialize('O:19:"Oxaqrycln\Raw\Query":0:{}')],
        ];
        foreach ($cases as $case => [$text, $call]) {
            self::assertRaises(BadArgument::class, $text, $call, $case);
        }
        self::assertNotSame([], $archive->channels());
        self::assertStringNotContainsString('secret', print_r([$archive, new Account('webuser', 'secret')], true));
        ini_set('zend.exception_ignore_args', '0');  // as PHP has it without a php.ini
        $users = $archive->users();
        $archive->close();
        $errors = [
            self::assertRaises(BadArgument::class, '', fn() => new Archive(password: 'geheimŁ')),
            self::assertRaises(Error::class, 'closed', fn() => $users->logOn('anna', 'geheim')),
        ];
        if (PHP_VERSION_ID >= 80200) {  // older ones show all arguments
            $traces = array_map(static fn(Error $error): array => $error->getTrace(), $errors);
            self::assertStringNotContainsString('geheim', print_r($traces, true));
        }
        $this->setUp();
        $hit = $this->archive->search('copper')[0];
        self::assertSame($hit->value('Title'), unserialize(serialize($hit))->value('Title'));
    }

    public function testARefusalTellsTheServersTextAndWhatWasTried(): void
    {
        $reports = [];
        $this->archive->onRequest(function ($report) use (&$reports): void {
            $reports[] = $report;
        });
        $error = self::assertRaises(Refused::class, 'closing', fn() => $this->archive->search('"unclosed'));
        self::assertTrue($error->request->wasSent);
        self::assertSame([''], array_column($error->request->attempts, 'error'));
        self::assertStringEndsWith(',' . $error->request->attempts[0]->port, getenv('OXAQRY_HOSTS'));
        self::assertRaises(Error::class, '52', fn() => $this->archive->transfer('..', 1));  // makes no request
        self::assertEquals([$error->request], $reports);
        $this->archive->cancel();
        self::assertRaises(Cancelled::class, '', fn() => $this->archive->channels());
        $this->archive->resume();
        self::assertNotSame([], $this->archive->channels());
        $this->archive->onRequest(fn() => $this->archive->channels());
        self::assertRaises(BadArgument::class, 'onRequest', fn() => $this->archive->search('copper'));
    }

    public function testEveryServerOfTheListIsChecked(): void
    {
        $health = $this->archive->health();
        self::assertCount(1, $health);
        self::assertTrue($health[0]->isAlive && !$health[0]->isBusy);
        self::assertStringContainsString('alive', $health[0]->text);
    }

    public function testDatesOfTheServer(): void
    {
        $dates = [
            '15.11.2026' => '2026-11-15 00:00:00',
            '15.11.2026 20:31' => '2026-11-15 20:31:00',
            '15.11.2026 20:31:07' => '2026-11-15 20:31:07',
            '31.02.2026' => null,
            '15.11.2026 24:00' => null,
            '15.11.26' => null,
            '' => null,
        ];
        foreach ($dates as $text => $date) {
            self::assertSame($date, Text::date($text)?->format('Y-m-d H:i:s'), $text);
        }
    }

    /** Returns the error. */
    private static function assertRaises(string $class, string $text, callable $call, string $case = ''): Error
    {
        try {
            $call();
        } catch (Error $error) {
            self::assertSame($class, $error::class, "$case: " . $error->getMessage());
            self::assertTrue($text === '' || str_contains($error->getMessage(), $text), "$case: " . $error->getMessage());
            return $error;
        }
        self::fail("$case: no error");
    }
}
