-- Customer master data
CREATE TABLE dbo.Customers (
    CustomerID INT NOT NULL PRIMARY KEY,
    Name NVARCHAR(100) NOT NULL,
    Email VARCHAR(255) NULL,
    CreatedAt DATETIME NOT NULL DEFAULT GETDATE()
);
GO

SELECT TOP 10 CustomerID, Name, ISNULL(Email, 'n/a') AS Email
FROM dbo.Customers
WHERE CreatedAt > DATEADD(day, -30, GETDATE())
ORDER BY CreatedAt DESC;
GO
