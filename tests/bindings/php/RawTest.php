<?php

declare(strict_types=1);

use Oxaqrycln\BadArgument;
use Oxaqrycln\Raw\Kind;
use Oxaqrycln\Raw\Library;
use Oxaqrycln\Raw\Query;
use Oxaqrycln\Raw\Value;
use PHPUnit\Framework\TestCase;

/** The raw level where the scenario does not reach: PHP's own values, and what is refused. */
final class RawTest extends TestCase
{
    public function testPhpsValuesKeepTheirKindAndContent(): void
    {
        $date = new DateTimeImmutable('1988-02-29 23:59:58');
        $values = [[null, Kind::Empty], [true, Kind::Boolean], [-2147483648, Kind::Long], [0.5, Kind::Double],
            ["Jörg „€“ \u{81}\0.", Kind::Text], ['', Kind::Text]];
        foreach ($values as [$native, $kind]) {
            $value = new Value($native);
            self::assertSame([$kind, $native], [$value->kind(), $value->native()], $kind->name);
        }
        self::assertEquals([Kind::Date, $date], [(new Value($date))->kind(), (new Value($date))->native()]);
        self::assertSame(["\0\xFF", Kind::Bytes], [Value::bytes("\0\xFF")->native(), Value::bytes('a')->kind()]);
        $query = new Query();
        $query->datUserLoginTime = $date;
        self::assertEquals($date, $query->datUserLoginTime);
    }

    public function testOutputsAreWrittenOrKeepTheirValue(): void
    {
        $query = new Query();
        $status = 'secret';
        self::assertSame(-1, $query->TELOGetChannelsInit($status));
        self::assertStringContainsString('call Init first', $status);
        self::assertSame([Kind::Integer, 91], [$query->result()->kind(), $query->handledError()[0]]);
        self::assertSame([1, $status], [$query->requestNumber(), $query->outcomeText()]);
        self::assertSame('AC98A69293A4', $query->Encode('secret'));  // not what the method has written over it
        [$kept, $new, $inValue] = ['kept', null, new Value(5)];
        self::assertSame('', $query->TELOQueryArchiveNext($kept, $new, strVer: $inValue));
        self::assertSame(['kept', null, 5], [$kept, $new, $inValue->native()]);
    }

    public function testAVariableHasADefaultOnlyWhenThereIsNone(): void
    {
        $query = new Query();
        $query->strUserName = '';
        self::assertSame(['', 'default', 'default'], [
            $query->strUserName ?? 'default',
            $query->strNone ?? 'default',
            $query->RemoteHosts ?? 'default',  // which cannot be read
        ]);
    }

    public function testAnArgumentMayCallTheInstanceThatItIsFor(): void
    {
        $query = new Query();
        $key = new class($query) implements Stringable {
            public function __construct(private Query $query)
            {
            }

            public function __toString(): string
            {
                return substr($this->query->Encode('another'), 0, 0) . 'key4567';
            }
        };
        self::assertSame('text', $query->DecryptBase64($query->EncryptBase64('text', $key), 'key4567'));
    }

    public function testAWholeListComesInOneCall(): void
    {
        $query = new Query();
        $lines = "^0^,^0^,^0^,^0^\r\n^Reference^,^DocID^,^Version^,^Title^\r\n^r^,^1^,^1^,^ä€^\r\n^r^,^2^,^1^,^^\r\n";
        self::assertSame(3, $query->TELOSortHitlist2Init($lines, 1));
        $rows = $query->fetchRows('TELOSortHitlist2Next', 3);
        self::assertSame([['^Reference^,^DocID^,^Version^,^Title^'], ['^r^,^2^,^1^,^^'], ['^r^,^1^,^1^,^ä€^']], array_map(
            $rows->row(...),
            range(0, \count($rows) - 1),
        ));
        self::assertCount(0, $query->fetchRows('TELOSortHitlist2Next', 5, everyRow: false));
    }

    /** PHP destroys no object whose constructor fails, and keeps what it knows of types until the page ends. */
    public function testALongPageKeepsItsSize(): void
    {
        $query = new Query();
        $run = static function (int $count) use ($query): void {
            for ($i = 0; $i < $count; ++$i) {
                try {
                    $query->fetchRows('HelloWorld', 1);
                    Value::bytes('bytes')->native();
                    new Value('Łódź');
                } catch (BadArgument) {
                }
            }
        };
        $resident = static fn(): int => (int) preg_replace('/.*VmRSS:\s+(\d+).*/s', '$1', file_get_contents('/proc/self/status'));
        $run(1000);
        $before = [memory_get_usage(), $resident()];
        $run(20000);
        self::assertLessThan($before[0] + 65536, memory_get_usage());
        self::assertLessThan($before[1] + 4096, $resident());
    }

    public function testMisuseIsRefusedWithWhatIsWrong(): void
    {
        $query = new Query();
        [$value, $free] = [new Value(), new Value()];
        $free->free();
        $cases = [
            'no such variable' => ['no member none', fn() => $query->none = 1],
            'no such list' => ['no member none', fn() => $query->fetchRows('none', 1)],
            'no such row' => ['no text 0 of row 0', fn() => $query->fetchRows('HelloWorld', 0)->text(0)],
            'no list' => ['needs the argument', fn() => $query->fetchRows('Encode', 1)],
            'no number' => ['', fn() => $query->lngRequestTimeout = 'many'],
            'number out of range' => ['not in the range', fn() => $query->lngRequestTimeout = 1 << 31],
            'byte out of range' => ['not in the range', fn() => Value::byte(256)],
            'foreign character' => ['character 2', fn() => $query->strUserName = 'aŁ'],
            'no value' => ['stdClass', fn() => $query->Encode(new stdClass())],
            'freed value' => ['free already', fn() => $query->CheckLogon('anna', $free)],
            'year out of range' => ['100 to 9999', fn() => new Value(new DateTime('+9000 years'))],
            'one value for two outputs' => ['twice', fn() => $query->TELOQueryArchiveNext($value, $value)],
        ];
        foreach ($cases as $case => [$text, $call]) {
            try {
                $call();
                self::fail("$case: no error");
            } catch (Oxaqrycln\Error $error) {
                self::assertStringContainsString($text, $error->getMessage(), $case);
                self::assertSame(str_starts_with($case, 'one') ? Oxaqrycln\Error::class : BadArgument::class, $error::class);
            }
        }
        $query->free();
        $this->expectException(Oxaqrycln\Error::class);
        $query->HelloWorld();
    }

    public function testTheLibraryTellsItsRelease(): void
    {
        self::assertMatchesRegularExpression('/^\d+\.\d+\.\d+$/', Library::version());
    }
}
