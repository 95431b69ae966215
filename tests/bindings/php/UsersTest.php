<?php

declare(strict_types=1);

use Oxaqrycln\Account;
use Oxaqrycln\Archive;
use Oxaqrycln\BadArgument;
use Oxaqrycln\DatabaseFailed;
use Oxaqrycln\EditRight;
use Oxaqrycln\Users;
use PHPUnit\Framework\TestCase;

/** Web users in a database of the tests. */
final class UsersTest extends TestCase
{
    private const ANNA = 3;

    public function testAUserLogsOnAndHasTheRightsOfHisGroups(): void
    {
        $users = new Users(database: getenv('OXAQRY_DATABASE'));
        self::assertSame(self::ANNA, $users->logOn('anna', 'secret'));
        foreach (['anna' => 'wrong', "x' OR '1" => 'secret', 'Łódź' => 'secret'] as $name => $password) {
            self::assertNull($users->logOn($name, $password), $name);
        }
        self::assertSame(self::ANNA, $users->find('anna'));
        self::assertEquals(new Account('webuser', 'secret'), $users->accountOf(self::ANNA));
        self::assertNull($users->accountOf(1));
        self::assertSame([7], $users->rights(self::ANNA));
        self::assertSame(['Sales'], $users->groups(self::ANNA));
        self::assertEqualsCanonicalizing(['Büro', 'Finance'], $users->channels(self::ANNA));
        self::assertEquals([new EditRight('Orders, old', true, false, true)], $users->editRights(self::ANNA));
        self::assertSame('$(#Büro);$(#Finance)\Orders;', $users->folderRights(self::ANNA));
        self::assertSame('', $users->folderRights(99));
        self::assertCount(2, $users->documentConditions(self::ANNA, 'Finance', 'Invoices'));
        self::assertNotSame([], $users->searchRights(self::ANNA, 'Finance', 'Orders')->hiddenFields);
    }

    public function testAUserIsCreatedAndChangesHisPassword(): void
    {
        $users = new Users(database: getenv('OXAQRY_DATABASE'));
        $id = $users->create('bert', 'first', new Account('webuser', 'secret'));
        $users->setMustChangePassword($id, true);
        self::assertTrue($users->mustChangePassword($id));
        self::assertFalse($users->changePassword('bert', 'wrong', 'second'));
        self::assertTrue($users->changePassword('bert', 'first', 'second'));
        self::assertSame($id, $users->logOn('bert', 'second'));
        $this->expectException(BadArgument::class);
        $users->create('carl', str_repeat('ü', 40));
    }

    public function testAnOutlinerLeadsToAQuery(): void
    {
        $archive = new Archive(database: getenv('OXAQRY_DATABASE'));
        $outliner = $archive->outline('Finance', 'Invoices')[0];
        $node = $archive->nodes($outliner->id)[0];
        self::assertGreaterThan(0, $node->childCount);
        self::assertStringContainsString('"' . $node->content . '"', $archive->nodeQuery($node->id));
        self::assertSame(self::ANNA, $archive->users()->find('anna'));
    }

    public function testAFailingDatabaseIsAnErrorAndItsConnectionStringIsNotLogged(): void
    {
        $logs = getenv('OXAQRY_DIRECTORY') . '/logs';
        @mkdir($logs);
        new Archive(session: 'S1', logDir: $logs, database: getenv('OXAQRY_DATABASE') . ';Password=topsecret');
        foreach (glob("$logs/*") as $log) {
            self::assertStringNotContainsString('topsecret', file_get_contents($log));
        }
        $users = new Users(database: 'Driver={SQLite3};Database=' . getenv('OXAQRY_DIRECTORY') . '/empty.sqlite');
        foreach (['channels', 'folderRights', 'rights'] as $method) {
            try {
                $users->$method(self::ANNA);
                self::fail($method);
            } catch (DatabaseFailed $error) {
                self::assertStringContainsString('no such table', $error->getMessage());
            }
        }
        $this->expectException(DatabaseFailed::class);
        new Archive(database: 'Driver={No such driver}');
    }
}
