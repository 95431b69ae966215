<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

use Oxaqrycln\BadArgument;

/**
 * An instance of the component: what its members, in Query, stand on, and the watch over its requests.
 *
 * An input takes null (Empty), bool, int, float, string (UTF-8), a date or a Value. An output is a variable, whose content
 * is the start value; when that is a Value, the Value is written. Named arguments leave out the parameters between them.
 * Results are PHP's values; result() has the kind of the last one.
 */
abstract class Instance extends Owned
{
    private const UTF8 = 0;

    /** The values of arguments, by position; used again by each call. */
    private array $values = [];
    /** What they hold for certain, so that it need not be set again; null where that is unknown. */
    private array $held = [];
    private readonly Value $result;
    private readonly \FFI\CData $arguments;

    public function __construct()
    {
        parent::__construct('query');
        $this->result = new Value();
        $this->arguments = $this->library->ffi->new('oxaqry_value*[' . Library::MOST_VALUES . ']');
    }

    /** Reads a variable. */
    public function __get(string $name): mixed
    {
        $value = $this->given(0, null);
        $this->library->check(
            $this->library->ffi->oxaqry_get_variable($this->handle, self::number($name), $value->handle),
        );
        return $value->native();
    }

    /** Assigns a variable, or the property RemoteHosts. */
    public function __set(string $name, mixed $native): void
    {
        $this->library->check($this->library->ffi->oxaqry_set_variable(
            $this->handle,
            self::number($name),
            $this->given(0, $native)->handle,
        ));
    }

    /** Whatever the last call returned; the next one replaces what it holds. */
    public function result(): Value
    {
        return $this->result;
    }

    /**
     * Calls a method that reads the next record of a list, until the list ends or $max records are read.
     *
     * @param list<int> $columns positions of outputs among the parameters, from 0
     * @param bool $everyRow false: an empty result or a negative number ends the list; true: only $max does
     */
    public function fetchRows(string $method, int $max, array $columns = [], bool $everyRow = true): Rows
    {
        $ffi = $this->library->ffi;
        $count = \count($columns);
        $positions = $count === 0 ? null : $ffi->new("int32_t[$count]");
        foreach ($columns as $at => $column) {
            $positions[$at] = $column;
        }
        $rows = $ffi->new('oxaqry_rows*[1]');
        $this->library->check($ffi->oxaqry_fetch_rows(
            $this->handle,
            self::number($method),
            $max,
            $positions,
            $count,
            (int) $everyRow,
            self::UTF8,
            $rows,
        ));
        return new Rows($rows[0]);
    }

    /** @return array{int, int, bool, int} an oxaqry_outcome_kind, milliseconds, whether sent, number of attempts */
    public function outcome(): array
    {
        $library = $this->library;
        $library->check($library->ffi->oxaqry_outcome(
            $this->handle,
            $library->number,
            $library->long,
            $library->number2,
            $library->number3,
        ));
        return [$library->number[0], $library->long[0], $library->number2[0] !== 0, $library->number3[0]];
    }

    /** @return array{string, int, string, int} host, port, error, milliseconds of an attempt, from 0 */
    public function attempt(int $index): array
    {
        $library = $this->library;
        $library->check($library->ffi->oxaqry_attempt(
            $this->handle,
            $index,
            $library->text,
            $library->length,
            $library->number,
            $library->text2,
            $library->length2,
            $library->long,
        ));
        return [$library->handedOut(), $library->number[0], $library->handedOut2(), $library->long[0]];
    }

    /** @return array{int, string} number and text of the error that the last method handled; 0 without one */
    public function handledError(): array
    {
        $library = $this->library;
        $library->check(
            $library->ffi->oxaqry_handled_error($this->handle, $library->number, $library->text, $library->length),
        );
        return [$library->number[0], $library->handedOut()];
    }

    /** The number alone. */
    public function handledNumber(): int
    {
        $number = $this->library->number;
        $this->library->check($this->library->ffi->oxaqry_handled_error($this->handle, $number, null, null));
        return $number[0];
    }

    /** @return list<array{string, int, bool, bool, string}> host, port, takes print requests, is busy, session */
    public function servers(): array
    {
        $library = $this->library;
        $library->check($library->ffi->oxaqry_server_count($this->handle, $library->number));
        $servers = [];
        for ($count = $library->number[0], $i = 0; $i < $count; ++$i) {
            $library->check($library->ffi->oxaqry_server(
                $this->handle,
                $i,
                $library->text,
                $library->length,
                $library->number,
                $library->number2,
                $library->number3,
                $library->long,
                $library->text2,
                $library->length2,
            ));
            [$takesPrint, $isBusy] = [$library->number2[0] !== 0, $library->number3[0] !== 0];
            $servers[] = [$library->handedOut(), $library->number[0], $takesPrint, $isBusy, $library->handedOut2()];
        }
        return $servers;
    }

    /** Servers that failed are passed over while another one is free. */
    public function trySickServersLast(): void
    {
        $this->library->check($this->library->ffi->oxaqry_set_sick_servers($this->handle, 1));
    }

    /** Ends each later request at once, until resume(). */
    public function cancel(): void
    {
        $this->library->check($this->library->ffi->oxaqry_cancel($this->handle));
    }

    public function resume(): void
    {
        $this->library->check($this->library->ffi->oxaqry_resume($this->handle));
    }

    /**
     * Calls a method with inputs and the outputs behind them, and reads all texts at once: the outputs, then the result.
     * An output that the method does not write keeps the text of an earlier call, except for the last one, which is "".
     *
     * @param list<mixed> $inputs
     * @return list<string>
     */
    public function callForTexts(string $method, array $inputs, int $outputCount): array
    {
        [$ffi, $arguments, $count] = [$this->library->ffi, $this->arguments, \count($inputs)];
        foreach ($inputs as $at => $native) {
            $arguments[$at] = $this->given($at, $native)->handle;
        }
        $end = $count + $outputCount;
        for ($at = $count; $at < $end; ++$at) {
            $arguments[$at] = ($this->values[$at] ?? $this->given($at, null))->handle;
            $this->held[$at] = null;
        }
        $this->values[$end - 1]->set(null);
        $result = $this->result->handle;
        $this->library->check($ffi->oxaqry_call($this->handle, self::number($method), $arguments, $end, $result));
        $arguments[$end] = $result;
        $this->library->check(
            $ffi->oxaqry_value_get_texts($arguments, $end + 1, self::UTF8, $this->library->texts, $this->library->lengths),
        );
        return $this->library->manyHandedOut($count, $end);
    }

    /**
     * Calls a method.
     *
     * @param array<int, mixed> $inputs by position
     * @param array<int, mixed> $outputs references by position
     */
    protected function invoke(int $method, array $inputs, array $outputs): mixed
    {
        $arguments = $this->arguments;
        $count = 0;
        foreach ($inputs as $at => $native) {
            if ($native === Argument::LeftOut) {
                $arguments[$at] = null;
            } else {
                $arguments[$at] = $this->given($at, $native)->handle;
                $count = $at + 1;
            }
        }
        $read = [];
        foreach ($outputs as $at => $native) {
            if ($native === Argument::LeftOut) {
                $arguments[$at] = null;
                continue;
            }
            $value = $this->given($at, $native);
            $this->held[$at] = null;
            $arguments[$at] = $value->handle;
            $count = max($count, $at + 1);
            if ($value !== $native) {
                $read[$at] = $value;
            }
        }
        $this->library->check(
            $this->library->ffi->oxaqry_call($this->handle, $method, $arguments, $count, $this->result->handle),
        );
        foreach ($read as $at => $value) {
            $outputs[$at] = $value->native();
        }
        return $this->result->native();
    }

    private function given(int $at, mixed $native): Value
    {
        if ($native instanceof Value) {
            return $native;
        }
        $value = $this->values[$at] ??= new Value();
        if ($native === null || ($this->held[$at] ?? null) !== $native) {
            $value->set($native);
            $this->held[$at] = \is_scalar($native) ? $native : null;
        }
        return $value;
    }

    private static function number(string $name): int
    {
        return Query::MEMBERS[$name] ?? throw new BadArgument("the component has no member $name");
    }
}
