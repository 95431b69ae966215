<?php

declare(strict_types=1);

namespace Portal\Output;

/**
 * A file of templates/. It sees $h, which prints, and the values it is given. It prints with "<?= $h(...) ?>" or a method
 * of $h alone; a test refuses a template that prints otherwise.
 */
final class Template
{
    public function __construct(private readonly Html $h)
    {
    }

    /** @param array<string, mixed> $values by the names of the variables */
    public function render(string $template, array $values = []): SafeHtml
    {
        return SafeHtml::of((static function (string $portalTemplate, Html $h, Template $templates, array $portalValues): string {
            extract($portalValues, EXTR_SKIP);
            ob_start();
            try {
                require $portalTemplate;
                return (string) ob_get_contents();
            } finally {
                ob_end_clean();
            }
        })(\dirname(__DIR__, 2) . "/templates/$template.php", $this->h, $this, $values));
    }
}
