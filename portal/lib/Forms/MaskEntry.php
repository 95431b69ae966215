<?php

declare(strict_types=1);

namespace Portal\Forms;

/** A field of a mask as a form shows it. */
final class MaskEntry
{
    /** @param list<string> $choices */
    public function __construct(
        /** of the form's field */
        public readonly string $key,
        /** as the archive names it */
        public readonly string $name,
        public readonly string $value,
        public readonly array $choices,
        public readonly bool $isListOnly,
        public readonly bool $isMandatory,
        /** in characters */
        public readonly int $width,
        public readonly bool $isAlignedRight,
    ) {
    }

    /** What is wrong with the value: "mandatory", "list", "characters", or "". */
    public function problem(): string
    {
        return match (true) {
            trim($this->value) === '' => $this->isMandatory ? 'mandatory' : '',
            $this->isListOnly && !\in_array($this->value, $this->choices, true) => 'list',
            !ArchiveText::isStorable($this->value) => 'characters',
            default => '',
        };
    }
}
