<?php

declare(strict_types=1);

namespace Oxaqrycln\Raw;

use Oxaqrycln\BadArgument;

/**
 * An instance of the component: what its members, in Query, stand on, and the watch over its requests. It belongs to the
 * process that made it: WrongThread in a forked one.
 *
 * An input takes null (Empty), bool, int, float, string (UTF-8), a date or a Value. An output is a variable, whose content
 * is the start value; when that is a Value, the Value is written. Named arguments leave out the parameters between them.
 * Results are PHP's values; result() has the kind of the last one. BadArgument for a value that cannot be passed; failures
 * of the archive are results and status texts.
 */
abstract class Instance extends Owned
{
    private const UTF8 = 0;
    private const VARIABLE = 0;
    private const TRIED_LAST = 1;

    /** The values of arguments, by position; used again by each call. */
    private array $values = [];
    /** What they hold for certain, so that it need not be set again; null where that is unknown. */
    private array $held = [];
    private readonly Value $result;
    private readonly \FFI\CData $arguments;

    public function __construct()
    {
        $this->result = new Value();
        parent::__construct('query');
        $this->arguments = $this->library->ffi->new('oxaqry_value*[' . Library::MOST_VALUES . ']');
    }

    /**
     * Reads a variable.
     *
     * @throws BadArgument for a name that is none of a variable
     */
    public function __get(string $name): mixed
    {
        $value = $this->given(0, null);
        $this->library->check(
            $this->library->ffi->oxaqry_get_variable($this->handle, self::number($name), $value->handle),
        );
        return $value->native();
    }

    /** Whether it is a variable that can be read, for "??". */
    public function __isset(string $name): bool
    {
        $kind = $this->library->number;
        $number = Query::MEMBERS[$name] ?? 0;
        return $number > 0 && $this->library->ffi->oxaqry_member($number, $kind, null) === 0 && $kind[0] === self::VARIABLE;
    }

    /**
     * Assigns a variable, or the property RemoteHosts, whose failure handledError() tells.
     *
     * @throws BadArgument for a name that is none, and for a value that cannot be converted to the variable's type
     */
    public function __set(string $name, #[\SensitiveParameter] mixed $native): void
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
     * @param int $max 0 to 2147483647
     * @param list<int> $columns positions of outputs among the parameters, from 0
     * @param bool $everyRow false: an empty result or a negative number ends the list; true: only $max does
     *
     * @throws BadArgument for a method that reads no list. The component's own errors end the list: see handledError()
     */
    public function fetchRows(string $method, int $max, array $columns = [], bool $everyRow = true): Rows
    {
        $ffi = $this->library->ffi;
        $count = \count($columns);
        $positions = $count === 0 ? null : $ffi->new("int32_t[$count]");
        foreach ($columns as $at => $column) {
            $positions[$at] = $column;
        }
        $rows = $this->library->place('oxaqry_rows*');
        $this->library->check($ffi->oxaqry_fetch_rows(
            $this->handle,
            self::number($method),
            Value::inRange($max, 0, 2147483647),
            $positions,
            $count,
            (int) $everyRow,
            self::UTF8,
            $rows,
        ));
        return new Rows($rows[0]);
    }

    /** @return array{int, int, bool, int} of the last request: an oxaqry_outcome_kind, milliseconds, whether sent, attempts */
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

    /** What went wrong in the last request, of a refused one the server's own text; "" after a success. */
    public function outcomeText(): string
    {
        $library = $this->library;
        $library->check($library->ffi->oxaqry_outcome_text($this->handle, $library->text, $library->length));
        return $library->handedOut();
    }

    /** How many requests it has made, which is the number of the last one. */
    public function requestNumber(): int
    {
        $number = $this->library->long;
        $this->library->check($this->library->ffi->oxaqry_request_number($this->handle, $number));
        return $number[0];
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

    /** @return list<Server> the query servers of this process; none before RemoteHosts was assigned */
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
            $isBusy = $library->number3[0] !== 0;
            $since = $isBusy ? Value::date($library->long[0]) : null;
            $server = [$library->handedOut(), $library->number[0], $library->number2[0] !== 0, $isBusy, $since,
                $library->handedOut2()];
            $library->check($library->ffi->oxaqry_server_failures($this->handle, $i, $library->number));
            $servers[] = new Server(...[...$server, $library->number[0]]);
        }
        return $servers;
    }

    /**
     * Asks each server of a list whether it is alive, up to 16 at once, whatever servers the process has, with the account,
     * the session and the time-out of the variables.
     *
     * @param string $hosts as RemoteHosts takes it
     * @return Rows host, port, "1" or "0", the server's answer or why there is none, milliseconds; in the order of the list
     */
    public function checkServers(string $hosts): Rows
    {
        $rows = $this->library->place('oxaqry_rows*');
        $this->library->check(
            $this->library->ffi->oxaqry_check_servers($this->handle, $hosts, \strlen($hosts), $rows),
        );
        return new Rows($rows[0]);
    }

    /** Servers that failed are passed over while another one is free. */
    public function trySickServersLast(): void
    {
        $this->library->check($this->library->ffi->oxaqry_set_sick_servers($this->handle, self::TRIED_LAST));
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
     * Calls a method with inputs and the outputs behind them, and reads all texts at once: the result, then the outputs.
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
        $this->library->check($ffi->oxaqry_call_for_texts(
            $this->handle,
            self::number($method),
            $arguments,
            $end,
            $this->result->handle,
            self::UTF8,
            $this->library->texts,
            $this->library->lengths,
        ));
        return [...$this->library->manyHandedOut(0, 0), ...$this->library->manyHandedOut($count + 1, $end)];
    }

    /**
     * Calls a method.
     *
     * @param array<int, mixed> $inputs by position
     * @param array<int, mixed> $outputs references by position
     */
    protected function invoke(
        int $method,
        #[\SensitiveParameter] array $inputs,
        #[\SensitiveParameter] array $outputs,
    ): mixed {
        $arguments = $this->arguments;
        $count = 0;
        foreach ($inputs as $at => $native) {
            if ($native instanceof \Stringable) {
                $inputs[$at] = (string) $native;  // before any argument has its value: this may call a method, too
            }
        }
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

    private function given(int $at, #[\SensitiveParameter] mixed $native): Value
    {
        if ($native instanceof Value) {
            // The library would take it for an argument that is left out.
            return $native->handle === null ? throw new BadArgument('the Value given is free already') : $native;
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
